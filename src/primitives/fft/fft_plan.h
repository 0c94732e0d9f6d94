#pragma once
#include <memory>
#include <new>
#include <vector>

/// How lines of one length are transformed, and what the work on tiles of them needs to know.
namespace vldv::primitives::fft {

/// The lines of a tile lie side by side: each of its rows holds the real parts of one element of all lines, a cache
/// line of them, and then their imaginary parts.
template <class Number>
constexpr int lanes = 64 / static_cast<int>(sizeof(Number));
template <class Number>
constexpr int rowNumbers = 2 * lanes<Number>;

/// One splitting of blocks of `radix * stride` elements into `radix` blocks of `stride`.
template <class Number>
struct pass {
    int radix, stride;
    const Number* twiddles; ///< pairs exp(-2 pi i j p / (radix stride)), p = 1 … radix - 1 for each j < stride
    const Number* roots;    ///< pairs exp(-2 pi i q / radix), q < radix
};

/// A transform as the kernels see it. Where `chirp` stands, the length has a large prime factor, and the transform is
/// a convolution of length `rows` (Bluestein).
template <class Number>
struct transform {
    int length, rows; ///< elements of a line; rows of its tile
    int passCount;
    const pass<Number>* passes;
    const int* position;    ///< row of the tile where element i of the result stands; for all `rows` of them
    const Number* chirp;    ///< pairs exp(-pi i j^2 / length); null where the passes alone do
    const Number* response; ///< pairs: the convolution's other factor, in order of position
};

/// Memory that starts on a cache line.
template <class Number>
class aligned_numbers {
public:
    explicit aligned_numbers(std::size_t count)
        : numbers(static_cast<Number*>(::operator new(count * sizeof(Number), std::align_val_t{64})))
    {
    }
    Number* data() const noexcept { return numbers.get(); }

private:
    struct release {
        void operator()(Number* block) const noexcept { ::operator delete(block, std::align_val_t{64}); }
    };
    std::unique_ptr<Number, release> numbers;
};

/// Owns the tables of a transform.
template <class Number>
class plan {
public:
    explicit plan(int length);
    transform<Number> view() const noexcept;
    /// Numbers of a tile with its work space.
    std::size_t tileNumbers() const noexcept;

private:
    void addPasses();
    void addChirp();

    int length, rows;
    std::vector<std::vector<Number>> tables;
    std::vector<pass<Number>> passes;
    std::vector<int> position;
    std::vector<Number> chirp, response;
};

extern template class plan<float>;
extern template class plan<double>;

} // namespace vldv::primitives::fft
