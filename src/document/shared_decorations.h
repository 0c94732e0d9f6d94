#pragma once
#include "document/Decorations.h"

#include <memory>

namespace vldv::document {

/// Drawings that others may hold as they are at one moment, at no cost: the next edit then works on a copy of them. One
/// thread edits and shares, any other may look at what it was given.
class shared_decorations {
public:
    shared_decorations() = default;
    shared_decorations(const shared_decorations& other) noexcept : held(other.held), isShared(true)
    {
        other.isShared = true;
    }
    shared_decorations(shared_decorations&& other) noexcept = default;
    shared_decorations& operator=(const shared_decorations& other) { return *this = shared_decorations(other); }
    shared_decorations& operator=(shared_decorations&& other) noexcept = default;
    ~shared_decorations() = default;

    const decorations& get() const noexcept
    {
        static const decorations none;
        return held ? *held : none;
    }
    /// Never changes; null where there were never any.
    std::shared_ptr<const decorations> share() const noexcept
    {
        isShared = true;
        return held;
    }
    /// \throws std::bad_alloc with nothing changed
    decorations& edit()
    {
        // Not told by the count of holders: one that lets go on another thread may still have read just before.
        if (isShared || !held) held = std::make_shared<decorations>(get());
        isShared = false;
        return *held;
    }

private:
    std::shared_ptr<decorations> held;
    mutable bool isShared = false;
};

} // namespace vldv::document
