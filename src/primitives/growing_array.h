#pragma once
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>

namespace primitives {

/// A list of plain records that grows where it lies when it can: large blocks get new pages instead of a copy, so that
/// the list never takes the memory of two.
template <class Item>
class growing_array {
    static_assert(std::is_trivially_copyable_v<Item>);

public:
    std::size_t size() const noexcept { return used; }
    Item* data() noexcept { return items.get(); }
    const Item* data() const noexcept { return items.get(); }
    Item& operator[](std::size_t index) noexcept { return items.get()[index]; }
    const Item& operator[](std::size_t index) const noexcept { return items.get()[index]; }
    /// \throws std::bad_alloc with the list as it was
    void push_back(const Item& item)
    {
        if (used == capacity) grow();
        items.get()[used++] = item;
    }
    /// Drops what lies behind; keeps the memory.
    void shrink(std::size_t count) noexcept { used = count; }
    void clear() noexcept { used = 0; }

private:
    struct block_free {
        void operator()(Item* block) const noexcept { std::free(block); }
    };
    void grow()
    {
        const std::size_t wanted = capacity < 512 ? 1024 : capacity + capacity / 2;
        void* const block = std::realloc(static_cast<void*>(items.get()), wanted * sizeof(Item));
        if (!block) throw std::bad_alloc();
        static_cast<void>(items.release());
        items.reset(static_cast<Item*>(block));
        capacity = wanted;
    }

    std::unique_ptr<Item, block_free> items;
    std::size_t used = 0, capacity = 0;
};

} // namespace primitives
