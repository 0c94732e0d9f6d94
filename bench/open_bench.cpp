// Opening a 4096 x 4096 container against inflating its one entry with zlib, and the memory that it takes; then that of
// 192 MiB which do not pack, and how often opening them tells its progress.
#include "document/StorageDoc.h"
#include "memory_growth.h"
#include "ratio.h"
#include "support/streams.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <zlib.h>

using namespace vldv;

namespace {

constexpr unsigned side = 4096;
constexpr std::size_t arrayBytes = std::size_t{side} * side * sizeof(short);
constexpr unsigned noiseSide = 1024, noiseDepth = 96;
constexpr std::size_t noiseBytes = std::size_t{noiseSide} * noiseSide * noiseDepth * sizeof(short);

/// Waves with noise in the lowest bits, as a scan has them.
SPMDataStream surface()
{
    std::uint32_t noise = 1;
    return test_support::made_stream("height", {{side}, {side}}, {}, [&](unsigned i) {
        noise = noise * 1664525u + 1013904223u;
        return 9000.0 * std::sin(i % side * 0.011) * std::cos(i / side * 0.007) + (noise >> 28);
    });
}

/// 192 MiB of plain noise: as much is stored as comes out.
SPMDataStream noise_volume()
{
    std::uint64_t noise = 1;
    return test_support::made_stream("noise", {{noiseSide}, {noiseSide}, {noiseDepth}}, {}, [&](unsigned) {
        noise = noise * 6364136223846793005u + 1442695040888963407u;
        return noise >> 48;
    });
}

void save(const SPMDataStream& stream, const std::filesystem::path& path)
{
    CStorageDoc document;
    document.AddNewImages(&stream, 1);
    if (!document.DoSave(path.wstring().c_str(), false)) throw std::runtime_error("the container was not saved");
}

/// The packed bytes of the entry, found by the local header in front of its name.
std::vector<unsigned char> packed_samples(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const std::string_view text(file.data(), file.size());
    const std::size_t header = text.find("height.raw") - 30;
    std::uint16_t lengths[2];
    std::memcpy(lengths, file.data() + header + 26, sizeof lengths);
    const std::size_t begin = header + 30 + lengths[0] + lengths[1];
    return {file.begin() + static_cast<std::ptrdiff_t>(begin), file.end()};
}

void inflate_all(std::vector<unsigned char>& packed, std::vector<unsigned char>& out)
{
    z_stream stream{};
    inflateInit2(&stream, -MAX_WBITS);
    stream.next_in = packed.data();
    stream.avail_in = static_cast<unsigned>(packed.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<unsigned>(out.size());
    const int result = inflate(&stream, Z_FINISH);
    inflateEnd(&stream);
    if (result != Z_STREAM_END) throw std::runtime_error("the entry was not found");
}

/// \return how often it told its progress
int open_document(const std::filesystem::path& path)
{
    CStorageDoc document;
    int told = 0;
    document.onReadProgress = [&told](double) { return ++told > 0; };
    if (!document.OnOpenDocument(path.wstring().c_str())) throw std::runtime_error("the container was not opened");
    return told;
}

/// Bytes that opening adds to the peak of a process of its own.
double peak_bytes(const std::filesystem::path& path)
{
    int ends[2];
    if (pipe(ends) != 0) return 0.0;
    const pid_t child = fork();
    if (child == 0) {
        rusage before{}, after{};
        getrusage(RUSAGE_SELF, &before);
        open_document(path);
        getrusage(RUSAGE_SELF, &after);
        const double grown = 1024.0 * static_cast<double>(after.ru_maxrss - before.ru_maxrss);
        _exit(write(ends[1], &grown, sizeof grown) == sizeof grown ? 0 : 1);
    }
    double grown = 0.0;
    const bool told = read(ends[0], &grown, sizeof grown) == sizeof grown;
    waitpid(child, nullptr, 0);
    return told ? grown : 0.0;
}

} // namespace

int main()
{
    std::string folder = (std::filesystem::temp_directory_path() / "vldv-bench-XXXXXX").native();
    const std::filesystem::path path = std::filesystem::path(mkdtemp(folder.data())) / "surface.spm";
    save(surface(), path);
    const double grown = peak_bytes(path); // first, while nothing else was ever in memory
    std::vector<unsigned char> packed = packed_samples(path), out(arrayBytes);
    bench::contest contest;
    contest.add("inflate the entry", [&] { inflate_all(packed, out); });
    contest.add("open the container", [&] { open_document(path); });
    contest.run(7);
    const std::filesystem::path large = path.parent_path() / "noise.spm";
    save(noise_volume(), large);
    int told = 0;
    const double grownByNoise = 1e6 * bench::memory_growth([&] { told = open_document(large); });
    std::filesystem::remove_all(folder);
    bench::verdict verdict;
    verdict.at_most("open / inflate", contest.best("open the container") / contest.best("inflate the entry"), 1.3);
    verdict.at_most("memory / (array + 64 MiB)", grown / static_cast<double>(arrayBytes + (64u << 20)), 1.0);
    verdict.at_least("memory / array (opening was seen)", grown / static_cast<double>(arrayBytes), 0.9);
    verdict.at_most("memory of noise / (array + 64 MiB)", grownByNoise / static_cast<double>(noiseBytes + (64u << 20)),
                    1.0);
    verdict.at_least("memory of noise / array (opening was seen)", grownByNoise / static_cast<double>(noiseBytes), 0.9);
    verdict.at_least("progress told, times a 4 MiB", told / (static_cast<double>(noiseBytes) / (4u << 20)), 0.9);
    return verdict.exit_status();
}
