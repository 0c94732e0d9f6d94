#pragma once
#include <QString>
#include <QUrl>
#include <string>

namespace vldv::host {

// Paths between the logic and the toolkit. A byte that is no UTF-8 is a lone surrogate (U+DC80 … U+DCFF) in both; the
// toolkit's own conversions would replace it, and the file would not be found.

QString text_of_path(const std::wstring& path);
std::wstring path_of_text(const QString& text);
/// The file that a local URL names.
std::wstring path_of_url(const QUrl& url);

} // namespace vldv::host
