#include "surface/views/clipboard_text.h"

#include "base/streams/axis_units.h"
#include "base/text.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "surface/views/legend.h"

namespace vldv::surface {

namespace {

/// Names and values side by side; what would break a line of the table becomes a blank.
class cell_table {
public:
    void add(const std::string& name, const std::string& value)
    {
        append(names, name);
        append(values, value);
        isEmpty = false;
    }
    void add(const std::string& name, double value) { add(name, base::formatted("%G", value)); }
    std::wstring text(bool withHeader) const
    {
        return isEmpty ? std::wstring() : base::widen((withHeader ? names + "\r\n" : "") + values + "\r\n");
    }

private:
    void append(std::string& line, const std::string& cell) const
    {
        if (!isEmpty) line += '\t';
        for (const char c : cell) line += c == '\t' || c == '\r' || c == '\n' ? ' ' : c;
    }
    std::string names, values;
    bool isEmpty = true;
};

void add_side(cell_table& cells, unsigned name, const VLAxis& axis, int samples)
{
    const readable_number length = read_well(axis.get_units(), samples * axis.scale);
    cells.add(std::string(string_resource(name)) + ", " + length.units, length.value);
}

/// The characters of a measurement that are, or are not, among `characters`.
std::string filtered(const std::string& text, std::string_view characters, bool isKept)
{
    std::string out;
    for (const char c : text)
        if ((characters.find(c) != std::string_view::npos) == isKept) out += c;
    return out;
}

} // namespace

std::wstring clipboard_text(const legend_content& content, bool withFile, const std::string& direction, bool withHeader)
{
    cell_table cells;
    if (withFile) {
        cells.add(string_resource(texts::file), content.path);
        add_side(cells, texts::x, content.x, content.samples.cx);
        add_side(cells, texts::y, content.y, content.samples.cy);
        cells.add(string_resource(texts::image), content.imageName + " (" + direction + ")");
    }
    for (const parameter_line& line : content.parameters) cells.add(line.name, line.value);
    for (const statistics_row& row : content.statistics)
        if (!row.name.empty()) cells.add(row.units.empty() ? row.name : row.name + ", " + row.units, row.value);
    if (content.drawn && content.drawn->measure.isVisible) {
        const std::string text = base::narrow(content.drawn->measure.text);
        const std::string name = filtered(text, "0123456789E.+-=", false);
        cells.add(name.empty() ? "Data" : name, filtered(text, "0123456789E.+-,;", true));
    }
    return cells.text(withHeader);
}

} // namespace vldv::surface
