#include "host/peer/path_text.h"

#include "base/text.h"

namespace vldv::host {

QString text_of_path(const std::wstring& path) { return QString::fromStdWString(path); }

std::wstring path_of_text(const QString& text)
{
    std::wstring out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        // Pairs are joined. A lone surrogate stands for a byte of the path that is no UTF-8, and stays as it is.
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const char32_t code = isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode();
        out += static_cast<wchar_t>(code);
        i += isPair ? 1 : 0;
    }
    return out;
}

std::wstring path_of_url(const QUrl& url)
{
    return base::widen(QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString());
}

} // namespace vldv::host
