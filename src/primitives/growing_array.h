#pragma once
#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

namespace vldv::primitives {

/// A list of plain records that grows block by block: what it holds never moves, and it never takes the memory of two.
template <class Item>
class growing_array {
    static_assert(std::is_trivially_copyable_v<Item>);
    static constexpr std::size_t blockItems = 4096;

public:
    std::size_t size() const noexcept { return used; }
    bool empty() const noexcept { return used == 0; }
    Item& operator[](std::size_t index) noexcept { return blocks[index / blockItems][index % blockItems]; }
    const Item& operator[](std::size_t index) const noexcept { return blocks[index / blockItems][index % blockItems]; }
    void push_back(const Item& item)
    {
        if (used == blocks.size() * blockItems) blocks.push_back(std::make_unique_for_overwrite<Item[]>(blockItems));
        (*this)[used++] = item;
    }
    /// Drops what lies behind; keeps the memory.
    void shrink(std::size_t count) noexcept { used = count; }
    void clear() noexcept { used = 0; }

private:
    std::vector<std::unique_ptr<Item[]>> blocks;
    std::size_t used = 0;
};

} // namespace vldv::primitives
