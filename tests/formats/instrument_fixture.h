#pragma once
#include "base/streams/byte_reader.h"
#include "formats/recording.h"
#include "formats/registry.h"
#include "formats/source.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace instrument_fixture {

/// Files of one folder in memory, by name.
using folder = std::map<std::string, std::string>;

/// All files of a folder; none when it is not there.
folder load_files(const std::string& path);

/// One file of a folder; the others are its siblings.
class folder_source : public formats::source {
public:
    folder_source(const folder& files_, std::string name_) : files(files_), fileName(std::move(name_)) {}
    std::uint64_t size() const override { return files.at(fileName).size(); }
    bool read(std::uint64_t offset, std::span<std::byte> out) override;
    const std::string& name() const override { return fileName; }
    std::unique_ptr<formats::source> sibling(const std::string& other) override;
    std::vector<std::string> siblings() override;
    bool progress(double) override { return !isCancelled; }

    bool isCancelled = false;

private:
    const folder& files;
    std::string fileName;
};

using reader = base::read_result<formats::recording> (*)(formats::source&);

base::read_result<formats::recording> read(reader read, const std::string& bytes, const std::string& name = "file");
base::read_result<formats::recording> read(reader read, const folder& files, const std::string& name);

/// A file and a part of the reason why it is refused.
struct refused_file {
    std::string bytes, reason;
};

/// Expects that each file is refused for its reason, at the latest when its recording is finished.
void expect_refused(reader read, const std::vector<refused_file>& rows);

/// What opens a file with this content and name.
SupportedFileTypes type_of(const std::string& bytes, const std::string& name);

/// Builds a file from numbers and texts; what is written past the end is filled with zeros in between.
class bytes_builder {
public:
    template <class T>
    bytes_builder& add(T value, std::endian order = std::endian::little)
    {
        char raw[sizeof(T)];
        std::memcpy(raw, &value, sizeof(T));
        if (order != std::endian::native) std::reverse(raw, raw + sizeof(T));
        return text({raw, sizeof(T)});
    }
    template <class T>
    bytes_builder& put(std::size_t offset, T value, std::endian order = std::endian::little)
    {
        seek(offset);
        return add(value, order);
    }
    bytes_builder& text(std::string_view bytes);
    bytes_builder& text(std::size_t offset, std::string_view bytes) { return seek(offset).text(bytes); }
    bytes_builder& seek(std::size_t offset);
    /// Puts other bytes in the place of the first `from`, which has to be there.
    bytes_builder& replace(std::string_view from, std::string_view to);

    std::string content;

private:
    std::size_t position = 0;
};

/// One of the small files that fuzzing starts from ("tmd/heights.tmd"), to be changed.
bytes_builder seed(const std::string& path);

/// The image at this place; an empty one with a failed test when there is none.
const formats::recorded_image& image_at(const base::read_result<formats::recording>& result, std::size_t index);
/// Samples and their values by value axis 0, in stored order: bottom row first.
std::vector<int> raw_of(const formats::recorded_image& image);
std::vector<double> physical_of(const formats::recorded_image& image);
std::vector<double> physical_of(const SPMDataStream& stream);
std::vector<std::string> subimages_of(const formats::recorded_image& image);
/// "start step units" of the first axis of a dimension.
std::string axis_text(const formats::recorded_image& image, unsigned dimension);

/// An image in a line: `label [unit] (count: start + step unit; ...) {sub-images} over id: values`. Axes that count
/// points are their count alone; what an image lacks is left out. Values that were fitted are told as exactly as they
/// were kept.
std::string told(const formats::recorded_image& image);
/// All images of a recording, a line each, or why there is none.
std::string told(const base::read_result<formats::recording>& result);

/// What an image has to say of itself. What is left out is not compared.
struct expected_image {
    std::vector<double> values = {};
    std::map<std::string, std::string> strings = {}; ///< those among others; "" for one that must not be there
    bool isFitted = false;                           ///< values may be off by half a step
};
void expect_image(const formats::recorded_image& image, const expected_image& expected);

/// Expects that each beginning of the file is refused with a reason or read in part with a warning.
/// \param spare  bytes at the end that a file may lack
void expect_cuts_refused(reader read, const std::string& bytes, std::size_t spare = 0);

} // namespace instrument_fixture
