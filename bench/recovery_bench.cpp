// How long keeping a copy of a large document holds the interface thread up, and the memory that it takes.
#include "document/StorageDoc.h"
#include "ratio.h"
#include "recovery/autosave.h"
#include "support/streams.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <stdlib.h>
#include <sys/resource.h>
#include <thread>

using namespace vldv;

namespace {

constexpr unsigned samples = 256u << 20; // 512 MiB
constexpr double bytes = 2.0 * samples, longestPause = 50.0, toMilliseconds = 1000.0;

void add_large_image(CStorageDoc& document)
{
    SPMDataStream room =
        test_support::made_stream("height", {{samples}}, {}, [](unsigned i) { return i * 2654435761u >> 16; });
    document.moveIn(room);
}

double peak_bytes()
{
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return 1024.0 * static_cast<double>(used.ru_maxrss);
}

/// Runs `act` and gives its time in milliseconds.
template <class Act>
double timed(const Act& act)
{
    const auto start = std::chrono::steady_clock::now();
    act();
    return toMilliseconds * std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

int main()
{
    std::string name = (std::filesystem::temp_directory_path() / "vldv-bench-XXXXXX").native();
    const std::filesystem::path folder = mkdtemp(name.data());
    double longest = 0.0, whole = 0.0, closing = 0.0, grown = 0.0;
    {
        CStorageDoc document;
        add_large_image(document);
        recovery::autosave copies(folder / "state");
        const double before = peak_bytes();
        whole = timed([&] {
            do {
                longest = std::max(longest, timed([&] { copies.step({&document}); }));
                std::this_thread::sleep_for(std::chrono::milliseconds(5)); // the program goes on with other things
            } while (!copies.isUpToDate());
        });
        document.setImageDataS(0, "\1\2", 1, 0, 0);
        closing = timed([&] { copies.documentCloses(document); });
        grown = peak_bytes() - before;
    }
    std::filesystem::remove_all(folder);
    std::cout << "512 MiB are kept in " << whole << " ms; longest step " << longest << " ms, closing " << closing
              << " ms\n";
    bench::verdict verdict;
    verdict.at_most("longest step / 50 ms", longest / longestPause, 1.0);
    verdict.at_most("closing / 50 ms", closing / longestPause, 1.0);
    verdict.at_most("memory / (image / 4)", grown / (bytes / 4.0), 1.0);
    return verdict.exit_status();
}
