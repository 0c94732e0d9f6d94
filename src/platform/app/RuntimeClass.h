#pragma once
#include "vldv_api.h"

#include <memory>
#include <string_view>

class CCmdTarget;

/// A class that is made by its name: views, frames and documents.
struct CRuntimeClass {
    const char* name;
    const CRuntimeClass* base; ///< or null
    std::unique_ptr<CCmdTarget> (*create)();

    /// This class or one above it is `other`. \param other  may be null: false
    bool IsDerivedFrom(const CRuntimeClass* other) const noexcept
    {
        for (const CRuntimeClass* at = this; at; at = at->base)
            if (at == other) return true;
        return false;
    }
};

namespace vldv {

/// The runtime class of a C++ class that has a default constructor.
template <class Class>
std::unique_ptr<CCmdTarget> create_object()
{
    return std::make_unique<Class>();
}

/// Enters a class to be found by name, for the lifetime of the program.
VLDV_API void register_runtime_class(const CRuntimeClass& entry);
/// Null when no class of that name is entered.
VLDV_API const CRuntimeClass* find_runtime_class(std::string_view name) noexcept;

} // namespace vldv
