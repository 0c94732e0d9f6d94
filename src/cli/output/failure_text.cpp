#include "cli/output/failure_text.h"

#include <new>

namespace vldv::cli {

namespace {

std::string& operation()
{
    static std::string name;
    return name;
}

} // namespace

void set_operation(const std::string& name) { operation() = name; }

std::string failure_text(const std::exception& failure)
{
    if (!dynamic_cast<const std::bad_alloc*>(&failure)) return failure.what();
    return operation().empty() ? "not enough memory" : "not enough memory for " + operation();
}

} // namespace vldv::cli
