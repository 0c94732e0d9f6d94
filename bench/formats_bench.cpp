// Opening large files of instruments against reading their bytes, or inflating their entries; finding the sets of files
// in a large folder against doing so in a small one.
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/container/stream_source.h"
#include "formats/shared/file_group.h"
#include "formats/shared/zip_reader.h"
#include "ratio.h"

#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <stdlib.h>
#include <zlib.h>

using namespace vldv;

namespace {

using path = std::filesystem::path;

std::string little(std::uint64_t number, unsigned bytes)
{
    std::string text;
    for (unsigned i = 0; i < bytes; ++i) text += static_cast<char>(number >> 8 * i & 0xFF);
    return text;
}

void write_file(const path& file, const std::string& header, const std::string& data)
{
    std::ofstream out(file, std::ios::binary);
    out << header << data;
    if (!out.flush()) throw std::runtime_error("the file was not written");
}

/// Waves with noise in the lowest bits.
std::string samples(std::size_t count, unsigned bytes)
{
    std::string data;
    data.reserve(count * bytes);
    std::uint32_t noise = 1;
    for (std::size_t i = 0; i < count; ++i) {
        noise = noise * 1664525u + 1013904223u;
        const int value =
            static_cast<int>(9000.0 * std::sin(static_cast<double>(i) * 0.003)) + static_cast<int>(noise >> 28);
        data += little(static_cast<std::uint32_t>(bytes == 4 ? value * 100 : value), bytes);
    }
    return data;
}

/// 64 by 64 curves of two ways.
void make_force_volume(const path& file, unsigned bytes)
{
    constexpr unsigned side = 64;
    const unsigned points = 64u << 20; // bytes of the data
    const unsigned way = points / (side * side * 2 * bytes);
    const std::string count = std::to_string(way);
    std::string header = "\\*Force file list\r\n\\Version: " + std::string(bytes == 4 ? "0x09200000" : "0x05120000") +
                         "\r\n\\Data length: 8192\r\n\\*Ciao scan list\r\n\\Operating mode: Force Volume\r\n"
                         "\\Scan Size: 1000 nm\r\n\\Lines: 64\r\n\\@Sens. Zsens: V 10 nm/V\r\n"
                         "\\@Sens. DeflSens: V 20 nm/V\r\n\\*Ciao force list\r\n\\force/line: 64\r\n"
                         "\\*Ciao force image list\r\n\\Data offset: 8192\r\n\\Data length: " +
                         std::to_string(points) + "\r\n\\Samps/line: " + count + " " + count +
                         "\r\n\\Spring Constant: 0.25\r\n\\@4:Image Data: S [DeflectionError] \"Deflection Error\"\r\n"
                         "\\@4:Z scale: V [Sens. DeflSens] (0.000375 V/LSB) 2.5 V\r\n"
                         "\\@4:Ramp size: V [Sens. Zsens] (0.1 V/LSB) 2 V\r\n\\*File list end\r\n\x1A";
    header.resize(8192, '\0');
    write_file(file, header, samples(points / bytes, bytes));
}

/// One scanned image of 7168 by 7168.
void make_mdt(const path& file)
{
    constexpr unsigned side = 7168, variable = 56;
    const auto real = [](float value) { return little(std::bit_cast<std::uint32_t>(value), 4); };
    std::string frame = little(0, 2) + std::string(2 + 12, '\0') + little(variable, 2);
    for (int i = 0; i < 3; ++i) frame += real(0) + real(0.5f) + little(0xFFFF, 2);
    frame += std::string(variable - 30, '\0') + little(0, 2) + little(side, 2) + little(side, 2) + little(0, 2);
    const std::string data = samples(std::size_t{side} * side, 2) + little(6, 4) + "Height" + little(0, 4);
    frame = little(4 + frame.size() + data.size(), 4) + frame;
    write_file(file, "\x01\xB0\x93\xFF" + little(frame.size() + data.size(), 4) + std::string(25, '\0') + frame, data);
}

std::string deflated(const std::string& content)
{
    z_stream stream{};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::string out(deflateBound(&stream, content.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

class zip_maker {
public:
    void add(const std::string& name, const std::string& content)
    {
        const auto sum = crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size()));
        const std::string packed = deflated(content);
        const std::string common = little(20, 2) + little(0, 2) + little(8, 2) + little(0x210000, 4) + little(sum, 4) +
                                   little(packed.size(), 4) + little(content.size(), 4) + little(name.size(), 2) +
                                   little(0, 2);
        directory += "PK\1\2" + little(20, 2) + common + std::string(10, '\0') + little(body.size(), 4) + name;
        body += "PK\3\4" + common + name + packed;
        ++count;
    }
    void write(const path& file) const
    {
        // More entries than a plain end record counts take the larger records in front of it.
        const std::string large = "PK\6\6" + little(44, 8) + little(45, 2) + little(45, 2) + little(0, 8) +
                                  little(count, 8) + little(count, 8) + little(directory.size(), 8) +
                                  little(body.size(), 8);
        const std::string locator = "PK\6\7" + little(0, 4) + little(body.size() + directory.size(), 8) + little(1, 4);
        const std::string end = "PK\5\6" + little(0, 4) + little(0xFFFF, 2) + little(0xFFFF, 2) +
                                little(directory.size(), 4) + little(body.size(), 4) + little(0, 2);
        write_file(file, body, directory + large + locator + end);
    }

private:
    std::string body, directory;
    std::uint64_t count = 0;
};

std::string channel_lines(const std::string& name)
{
    const std::string c = "channel." + name + ".", s = c + "conversion-set.conversion";
    return c + "data.file.name=channels/" + name + ".dat\n" + c + "data.file.format=raw\n" + c + "data.type=short\n" +
           c + "data.encoder.type=signedshort\n" + c + "data.encoder.scaling.type=linear\n" + c +
           "data.encoder.scaling.multiplier=3.0921021713588157E-4\n" + c + "data.encoder.scaling.offset=-0.0072887\n" +
           c + "data.encoder.scaling.unit.unit=V\n" + s + "s.list=distance force\n" + s + "s.base=volts\n" + s +
           "s.default=force\n" + s + ".distance.base-calibration-slot=volts\n" + s +
           ".distance.scaling.multiplier=7E-8\n" + s + ".distance.scaling.offset=0.0\n" + s +
           ".distance.scaling.unit.unit=m\n" + s + ".force.base-calibration-slot=distance\n" + s +
           ".force.scaling.multiplier=0.0435\n" + s + ".force.scaling.offset=0.0\n" + s +
           ".force.scaling.unit.unit=N\n";
}

/// 4,096 curves of two segments, three channels and 1,000 points.
void make_jpk_map(const path& file)
{
    constexpr unsigned side = 64, points = 1000;
    const std::string prefix = "force-scan-map.position-pattern.grid.";
    zip_maker zip;
    zip.add("header.properties", "type=force-scan-map\n" + prefix + "ilength=64\n" + prefix + "jlength=64\n" + prefix +
                                     "ulength=1E-6\n" + prefix + "vlength=1E-6\n");
    const std::string data = samples(points * 64, 2);
    for (unsigned k = 0; k < side * side; ++k)
        for (unsigned s = 0; s < 2; ++s) {
            const std::string folder = "index/" + std::to_string(k) + "/segments/" + std::to_string(s) + "/";
            std::string header =
                "#Thu Mar 31 17:51:15 CEST 2016\nforce-segment-header.settings.style=" +
                std::string(s ? "retract" : "extend") + "\nforce-segment-header.duration=1.0\n" +
                "force-segment-header.num-points=1000\nforce-segment-header.position-index=" + std::to_string(k) +
                "\nchannels.list=height vDeflection error\n";
            for (const char* name : {"height", "vDeflection", "error"}) {
                header += channel_lines(name);
                zip.add(folder + "channels/" + name + ".dat", data.substr(k % 60 * points * 2, points * 2));
            }
            zip.add(folder + "segment-header.properties", header);
        }
    zip.write(file);
}

void open_document(const path& file)
{
    CStorageDoc document;
    if (!document.OnOpenDocument(file.wstring().c_str())) throw std::runtime_error("the file was not opened");
    if (document.getImagesNumber() == 0) throw std::runtime_error("the file holds nothing");
}

/// Into memory of its own, as a document needs it.
void read_whole(const path& file)
{
    const std::size_t size = std::filesystem::file_size(file);
    const auto bytes = std::make_unique_for_overwrite<char[]>(size);
    std::ifstream in(file, std::ios::binary);
    if (!in.read(bytes.get(), static_cast<std::streamsize>(size))) throw std::runtime_error("the file was not read");
}

void inflate_entries(const path& file)
{
    std::ifstream in(file, std::ios::binary);
    document::stream_source source(in, file.wstring());
    const auto zip = formats::zip_reader::open(source, formats::zip_reader::names::with_folders);
    if (!zip) throw std::runtime_error(zip.error().reason);
    std::vector<std::byte> out;
    for (const auto& [name, entry] : zip->all()) {
        out.resize(entry.bytes);
        if (!zip->unpack(entry, out).empty()) throw std::runtime_error("an entry was not inflated");
    }
}

/// As many files of channels, four a scan.
std::vector<std::string> names_of_channels(unsigned count)
{
    std::vector<std::string> names;
    for (unsigned i = 0; i < count / 4; ++i)
        for (const char* const channel : {"phase", "z(err)_fwd", "z(hgt)_fwd", "z(hgt)_rev"})
            names.push_back(base::formatted("night %05u.%s.sur", i, channel));
    return names;
}

} // namespace

int main()
{
    std::string name = (std::filesystem::temp_directory_path() / "vldv-bench-XXXXXX").native();
    const path folder = mkdtemp(name.data());
    const path narrow = folder / "volume.001", wide = folder / "wide.001", mdt = folder / "scan.mdt",
               map = folder / "map.jpk-force-map";
    make_force_volume(narrow, 2);
    make_force_volume(wide, 4);
    make_mdt(mdt);
    make_jpk_map(map);
    bench::contest contest;
    contest.add("read 64 MiB", [&] { read_whole(narrow); });
    contest.add("open a force volume of 16 bits", [&] { open_document(narrow); });
    contest.add("open a force volume of 32 bits", [&] { open_document(wide); });
    contest.add("read 103 MB", [&] { read_whole(mdt); });
    contest.add("open an .mdt", [&] { open_document(mdt); });
    contest.add("inflate the entries of a map", [&] { inflate_entries(map); });
    contest.add("open a map of 4,096 curves", [&] { open_document(map); });
    const std::vector<std::string> few = names_of_channels(2000), many = names_of_channels(16000);
    contest.add("sets of 2,000 files", [&] { formats::group_leaders(few); });
    contest.add("sets of 16,000 files", [&] { formats::group_leaders(many); });
    contest.run(5);
    std::filesystem::remove_all(folder);
    bench::verdict verdict;
    const auto ratio = [&](const char* one, const char* other) { return contest.best(one) / contest.best(other); };
    verdict.at_most("force volume of 16 bits / read", ratio("open a force volume of 16 bits", "read 64 MiB"), 3.0);
    verdict.at_most("force volume of 32 bits / read", ratio("open a force volume of 32 bits", "read 64 MiB"), 3.0);
    verdict.at_most(".mdt / read", ratio("open an .mdt", "read 103 MB"), 3.0);
    verdict.at_most("map / inflate", ratio("open a map of 4,096 curves", "inflate the entries of a map"), 3.0);
    verdict.at_most("sets of 16,000 files / of 2,000", ratio("sets of 16,000 files", "sets of 2,000 files"), 16.0);
    return verdict.exit_status();
}
