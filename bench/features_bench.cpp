// Features of a 4096 x 4096 surface and skeletons of a 2048 x 2048 mask, against what reading and arithmetic alone cost
// and against OpenCV.
#include "memory_growth.h"
#include "primitives/map/byte_mask.h"
#include "primitives/mask/connected_runs.h"
#include "primitives/mask/thinning.h"
#include "primitives/numeric.h"
#include "ratio.h"
#include "render_floor.h"
#include "thinning_floor.h"

#include <cmath>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

using namespace vldv;

namespace {

constexpr double covered = 0.3;

/// Caps of paraboloids on a noisy base, each somewhere in its cell of a square lattice.
std::vector<std::int16_t> caps_on_a_base(int side, int features)
{
    std::vector<std::int16_t> out(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    std::uint32_t random = 1;
    const auto next = [&random] {
        return static_cast<double>((random = random * 1664525u + 1013904223u) >> 8) / (1 << 24);
    };
    for (std::int16_t& each : out) each = static_cast<std::int16_t>(100.0 * next());
    const int cells = static_cast<int>(std::lround(std::sqrt(features)));
    const double cell = static_cast<double>(side) / cells, radius = cell * std::sqrt(covered / 3.14159265358979);
    const double play = cell - 2.0 * radius - 3.0;
    for (int j = 0; j < cells; ++j)
        for (int i = 0; i < cells; ++i) {
            const double cx = i * cell + radius + 1.0 + play * next(), cy = j * cell + radius + 1.0 + play * next();
            for (int y = static_cast<int>(cy - radius); y <= static_cast<int>(cy + radius); ++y)
                for (int x = static_cast<int>(cx - radius); x <= static_cast<int>(cx + radius); ++x) {
                    const double r2 = ((x - cx) * (x - cx) + (y - cy) * (y - cy)) / (radius * radius);
                    if (r2 < 1.0 && x >= 0 && y >= 0 && x < side && y < side)
                        out[static_cast<std::size_t>(y) * static_cast<std::size_t>(side) +
                            static_cast<std::size_t>(x)] = static_cast<std::int16_t>(1000.0 + 9000.0 * (1.0 - r2));
                }
        }
    return out;
}

/// OpenCV's way to the same: a mask, labels, the sum in each label.
std::int64_t opencv_features(const cv::Mat& heights, std::int16_t threshold)
{
    cv::Mat mask, labels, boxes, centres;
    cv::compare(heights, cv::Scalar(threshold), mask, cv::CMP_GT);
    const int count = cv::connectedComponentsWithStats(mask, labels, boxes, centres, 8, CV_32S);
    std::vector<std::int64_t> sums(static_cast<std::size_t>(count));
    for (int y = 0; y < labels.rows; ++y)
        for (int x = 0; x < labels.cols; ++x)
            sums[static_cast<std::size_t>(labels.at<int>(y, x))] += heights.at<std::int16_t>(y, x);
    return sums.back();
}

/// The rule of Guo and Hall as a table of neighbourhoods, whose index a filter computes.
class opencv_thinning {
public:
    opencv_thinning() : weights(3, 3, CV_32F), odd(1, 256, CV_8U), even(1, 256, CV_8U)
    {
        const float of[9] = {32, 64, 128, 16, 0, 1, 8, 4, 2};
        for (int i = 0; i < 9; ++i) weights.at<float>(i / 3, i % 3) = of[i];
        for (unsigned around = 0; around < 256; ++around) {
            odd.at<std::uint8_t>(0, static_cast<int>(around)) = bench::is_thinned(around, true) ? 0 : 255;
            even.at<std::uint8_t>(0, static_cast<int>(around)) = bench::is_thinned(around, false) ? 0 : 255;
        }
    }
    void run(cv::Mat& ones) const
    {
        cv::Mat around, keeps, next;
        for (bool changed = true; changed;) {
            changed = false;
            for (const cv::Mat* table : {&odd, &even}) {
                cv::filter2D(ones, around, CV_8U, weights, {-1, -1}, 0, cv::BORDER_CONSTANT);
                cv::LUT(around, *table, keeps);
                cv::bitwise_and(ones, keeps, next);
                changed |= cv::norm(ones, next, cv::NORM_L1) != 0.0;
                std::swap(ones, next);
            }
        }
    }

private:
    cv::Mat weights, odd, even;
};

constexpr int side = 4096, thinSide = 2048;
constexpr std::int16_t threshold = 500;
constexpr int fastRounds = 40, slowRounds = 4;
constexpr int counts[] = {1000, 10000, 100000};
/// What a hand-written program takes as a multiple of reading all samples once (features) or of the arithmetic
/// (skeletons), and what is granted on top.
constexpr double grant = 1.15, featureLimits[] = {2.9 / 1.1, 5.8 / 1.1, 14.5 / 1.1};
constexpr double thinningLimits[] = {2.8 / 2.4, 1.2 / 0.8};

std::string of(const char* what, int count) { return what + std::string(", ") + std::to_string(count); }

void judge_features(bench::verdict& verdict)
{
    for (std::size_t i = 0; i < 3; ++i) {
        const std::vector<std::int16_t> samples = caps_on_a_base(side, counts[i]);
        const primitives::const_height_block block{samples.data(), side, side, 2 * side};
        const cv::Mat heights(side, side, CV_16SC1, const_cast<std::int16_t*>(samples.data()));
        primitives::connected_runs found;
        primitives::bit_image mask;
        const double grown = bench::memory_growth([&] { found.findAbove(block, threshold, mask); });
        const std::size_t bytes = found.areas().size() * sizeof found.areas()[0] +
                                  found.runs().size() * sizeof found.runs()[0] + std::size_t{side} * side / 8;
        const double result = 1e-6 * static_cast<double>(bytes);
        std::printf("%zu features in %zu runs, %.2f MB with their mask\n", found.areas().size(), found.runs().size(),
                    result);
        volatile std::int64_t kept = 0;
        bench::contest contest;
        contest.add("read every sample", [&] { kept = bench::read_all(samples); });
        contest.add(of("features", counts[i]), [&] {
            found.findAbove(block, threshold, mask);
            kept = found.areas()[0].heights.sum;
        });
        contest.run(fastRounds);
        bench::contest others;
        others.add(of("OpenCV features", counts[i]), [&] { kept = opencv_features(heights, threshold); });
        others.run(slowRounds);
        const double ours = contest.best(of("features", counts[i]));
        verdict.at_most(of("features / reading", counts[i]), ours / contest.best("read every sample"),
                        featureLimits[i] * grant);
        verdict.at_least(of("OpenCV / features", counts[i]), others.best(of("OpenCV features", counts[i])) / ours, 1.0);
        verdict.at_most(of("memory beyond the result, MB", counts[i]), grown - result, 2.0);
    }
}

void judge_thinning(bench::verdict& verdict)
{
    const opencv_thinning peer;
    for (std::size_t i = 0; i < 2; ++i) {
        const std::vector<std::int16_t> samples = caps_on_a_base(thinSide, counts[i]);
        std::vector<std::uint8_t> mask(samples.size());
        for (std::size_t k = 0; k < mask.size(); ++k) mask[k] = samples[k] > threshold;
        std::vector<std::uint8_t> work = mask;
        const int steps = bench::thinning_steps(mask, thinSide);
        std::printf("%d steps of thinning\n", steps);
        const double grown =
            bench::memory_growth([&] { findSkeletonByThinning(work.data(), thinSide, thinSide, thinSide, 2); });
        bench::thinning_floor floor(thinSide);
        primitives::bit_strips strips, bits;
        strips.assign(thinSide, thinSide);
        for (int y = 0; y < thinSide; ++y)
            primitives::pack_bytes(mask.data() + std::ptrdiff_t{y} * thinSide, thinSide, strips.strip(0) + y,
                                   strips.stride());
        primitives::thinner thinner;
        bench::contest contest;
        contest.add(of("arithmetic of thinning", counts[i]), [&] { floor.run(steps); });
        contest.add("copy the bits", [&] { bits = strips; });
        contest.add(of("copy and thin bits", counts[i]), [&] {
            bits = strips;
            thinner.thin(bits);
        });
        contest.add("copy the mask", [&] { work = mask; });
        contest.add("read and write the mask", [&] {
            for (std::uint8_t& each : work) each ^= 1;
        });
        contest.add(of("copy and thin", counts[i]), [&] {
            work = mask;
            findSkeletonByThinning(work.data(), thinSide, thinSide, thinSide, 2);
        });
        contest.run(fastRounds);
        bench::contest others;
        others.add(of("OpenCV thinning", counts[i]), [&] {
            cv::Mat ones = cv::Mat(thinSide, thinSide, CV_8U, mask.data()).clone();
            peer.run(ones);
        });
        others.run(slowRounds);
        const double arithmetic = contest.best(of("arithmetic of thinning", counts[i]));
        const double ours = contest.best(of("copy and thin", counts[i])) - contest.best("copy the mask");
        verdict.at_most(of("thinning bits / arithmetic", counts[i]),
                        (contest.best(of("copy and thin bits", counts[i])) - contest.best("copy the bits")) /
                            arithmetic,
                        thinningLimits[i] * grant);
        verdict.at_most(of("thinning bytes / (arithmetic + bytes)", counts[i]),
                        ours / (arithmetic + contest.best("read and write the mask")), thinningLimits[i] * grant);
        verdict.at_least(of("OpenCV / thinning", counts[i]), others.best(of("OpenCV thinning", counts[i])) / ours, 1.0);
        verdict.at_most(of("memory of thinning, MB", counts[i]), grown, 2.0);
    }
}

} // namespace

int main()
{
    cv::setNumThreads(1);
    bench::verdict verdict;
    judge_features(verdict);
    judge_thinning(verdict);
    return verdict.exit_status();
}
