#include "formats/nanoscope/nanoscope_text.h"

#include "formats/nanoscope/nanoscope_header.h"
#include "formats/nanoscope/nanoscope_image.h"
#include "formats/nanoscope/nanoscope_recording.h"
#include "formats/nanoscope/nanoscope_samples.h"
#include "formats/shared/left_out.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace vldv::formats {

namespace {

/// Walks whole decimal numbers between blanks; Ctrl-Z and zero bytes fill up a header and count as blanks.
class number_reader {
public:
    explicit number_reader(std::string_view text_) noexcept : text(text_) {}

    bool isAtEnd() const noexcept { return text.find_first_not_of(blanks) == std::string_view::npos; }

    /// More cannot be there, since each takes a digit and a blank.
    std::size_t mostNumbers() const noexcept { return (text.size() + 1) / 2; }

    /// False at the end and at what is no whole number.
    bool next(double& value) noexcept
    {
        text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
        std::int32_t number = 0;
        const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (problem != std::errc()) return false;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        value = number;
        return true;
    }

private:
    static constexpr std::string_view blanks{" \t\r\n\x1A\0", 6};

    std::string_view text;
};

/// Appends the numbers of one image and makes `image.offset` their place among all.
std::string take_samples(number_reader& numbers, nanoscope_image& image, std::vector<double>& samples)
{
    const std::uint64_t count = image.samples();
    const std::string shortage = "Samps/line times Number of lines asks for more samples than the file holds";
    if (count > numbers.mostNumbers()) return shortage;
    image.offset = samples.size();
    samples.resize(samples.size() + static_cast<std::size_t>(count));
    for (std::size_t i = image.offset; i < samples.size(); ++i)
        if (!numbers.next(samples[i])) return shortage;
    return {};
}

recorded_image load_group(const image_group& group, const std::string& id, const std::vector<double>& samples)
{
    std::vector<double> raw;
    for (const nanoscope_image& part : group) {
        const auto first = samples.begin() + static_cast<std::ptrdiff_t>(part.offset);
        raw.insert(raw.end(), first, first + static_cast<std::ptrdiff_t>(part.samples()));
    }
    return make_image_from_raw(id, group.front().channel, frame_of(group), group.front().scale, raw);
}

} // namespace

base::read_result<recording> read_nanoscope_text(source& file)
{
    std::vector<std::byte> bytes;
    if (!file.readAll(bytes)) return base::read_error{0, "file cannot be read"};
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const nanoscope_header header = parse_nanoscope_header(text);
    number_reader numbers(text.substr(header.textLength));
    std::vector<double> samples;
    std::vector<nanoscope_image> images;
    left_out missing;
    for (const nanoscope_section& section : header.sections) {
        if (section.kind != nanoscope_list::image) continue;
        nanoscope_image image = describe_nanoscope_image(header, section);
        std::string problem = shape_nanoscope_image(header, image);
        if (problem.empty()) problem = take_samples(numbers, image, samples);
        if (!problem.empty()) { // the numbers behind it have no place that is known
            missing.add({header.textLength, message_title(images.size(), image) + problem + ", and what follows it"});
            break;
        }
        images.push_back(std::move(image));
    }
    if (images.empty()) return missing.empty() ? no_image_error(header) : missing.first();
    auto result = record_images(file, header, std::move(images), [&](const image_group& group, const std::string& id) {
        return base::read_result<recorded_image>(load_group(group, id, samples));
    });
    if (!result) return result;
    if (missing.empty() && !numbers.isAtEnd())
        add_warning(*result, "more numbers stand behind the last image than Samps/line and Number of lines ask for");
    missing.tell(*result);
    return result;
}

} // namespace vldv::formats
