#include "platform/files/Exceptions.h"

#include "base/text.h"

#include <cstring>

using namespace vldv;

namespace {

std::string sentence(CArchiveException::cause_code cause, const std::wstring& path, const std::string& reason)
{
    const char* general = cause == CArchiveException::endOfFile  ? "the file is empty or ends too early"
                          : cause == CArchiveException::badIndex ? "the content cannot be used"
                                                                 : "reading or writing failed";
    const std::string file = base::narrow(path);
    if (!file.empty() && reason.find(file) != std::string::npos) return reason;
    return file + ": " + (reason.empty() ? general : reason);
}

} // namespace

CArchiveException::CArchiveException(cause_code cause_, const std::wstring& path_, const std::string& reason)
    : CException(sentence(cause_, path_, reason)), cause(cause_), path(path_)
{
}

CFileException::CFileException(int error, const std::wstring& path_)
    : CException(base::narrow(path_) + ": " + std::strerror(error)), osError(error), path(path_)
{
}
