// Writes main.xml, the description inside a .spm container. Order, tabs, attributes and the lack of escapes are the
// format; the reader in spmx_layout.h counts on them.
#include "base/text.h"
#include "document/StorageDoc.h"
#include "document/container/spmx_write.h"

#include <new>
#include <ostream>
#include <stdexcept>

using namespace vldv;

namespace {

constexpr const char* publicId = "-//VLM//SPMx 1.0//EN";
constexpr const char* documentType = "http://velmira.example/vlvarlist/SPMxFormat.dtd";
constexpr const char* schema = "http://velmira.example/vlvarlist/SPMxFormat.xsd";

void write_strings(std::ostream& out, const document::spmx_texts& strings, const char* indent)
{
    for (const auto& [key, text] : strings) {
        out << indent << "<var id=\"" << key << '"';
        if (text.empty())
            out << "/>\n";
        else
            out << '>' << text << "</var>\n";
    }
}

void write_axes(std::ostream& out, const VLAxesContainer& axes, const char* indent)
{
    for (unsigned i = 0; i < axes.get_axes_number(); ++i) {
        const VLAxis& axis = axes.get_axis(i);
        out << indent << "<axis start=\"" << base::general(axis.start) << "\" scale=\"" << base::general(axis.scale)
            << "\" units=\"" << axis.get_units() << "\"/>\n";
    }
}

void write_names(std::ostream& out, const std::vector<smart_string>& names, const char* element)
{
    for (const smart_string& name : names) out << "\t\t<" << element << '>' << name.c_str() << "</" << element << ">\n";
}

void write_opening_tag(std::ostream& out, const SPMDataStream& stream)
{
    out << "\t<stream id=\"" << stream.get_name() << '"';
    if (*stream.get_description()) out << " name=\"" << stream.get_description() << '"';
    if (!stream.is_array() || stream.array_type() == SPM_ARRAY_VOID)
        out << " blocksize=\"" << std::to_string(stream.array_element_size()) << '"';
    if (stream.offset != 0) out << " offset=\"" << std::to_string(stream.offset) << '"';
    if (const char* parameter = stream.get_parameter_stream()) out << " parameter=\"" << parameter << '"';
    out << ">\n";
}

void write_stream(std::ostream& out, const SPMDataStream& stream, const document::spmx_texts& strings)
{
    write_opening_tag(out, stream);
    write_strings(out, strings, "\t\t");
    write_names(out, stream.dependent_vars(), "depends");
    write_names(out, stream.subimage_names(), "subimage");
    write_axes(out, stream.values, "\t\t");
    for (unsigned i = 0; i < stream.get_dimensions_number(); ++i) {
        out << "\t\t<dimension length=\"" << std::to_string(stream.get_dimension(i).length) << "\">\n";
        write_axes(out, stream.get_dimension(i), "\t\t\t");
        out << "\t\t</dimension>\n";
    }
    out << "\t\t<data content=\"" << array_type_keyword(stream.array_type()) << "\" ref=\"" << stream.get_name()
        << "\"/>\n\t</stream>\n";
}

} // namespace

namespace vldv::document {

void write_spmx_description(std::ostream& out, const spmx_content& content, const char* encoding)
{
    out << "<?xml version=\"1.0\" encoding=\"" << encoding << "\" standalone=\"no\" ?>\n"
        << "<!DOCTYPE spmx PUBLIC \"" << publicId << "\" \"" << documentType << "\" [\n"
        << "\t<!NOTATION spmRaw SYSTEM \"velmira.exe\">\n";
    for (const spmx_content::stream& each : content.streams) {
        const char* const id = each.data->get_name();
        out << "\t<!ENTITY " << id << " SYSTEM \"./" << id << ".raw\" NDATA spmRaw>\n";
    }
    out << "]>\n<spmx xmlns=\"" << schema << "\">\n";
    write_strings(out, *content.texts, "\t");
    for (const spmx_content::stream& each : content.streams) write_stream(out, *each.data, *each.texts);
    out << "</spmx>";
}

} // namespace vldv::document

document::spmx_content CStorageDoc::content() const
{
    document::spmx_content out{&documentStrings, {}};
    for (std::size_t i = 0; i < images.size(); ++i) out.streams.push_back({&images[i], &imageOptions[i].strings});
    return out;
}

int CStorageDoc::generateXML(std::ostream& out, smart_string* rawNames, int maxRaw, const char* encoding) const
try {
    int stored = 0;
    for (const SPMDataStream& stream : images)
        if (rawNames && stored < maxRaw) rawNames[stored++] = std::string(stream.get_name()) + ".raw";
    document::write_spmx_description(out, content(), encoding);
    return stored;
} catch (const std::bad_alloc&) {
    throw std::runtime_error("spmx_xml (" + std::to_string(__LINE__) +
                             "):  runtime error: Zero pointer exception in function: CStorageDoc::generateXML");
}
