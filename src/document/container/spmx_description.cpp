#include "document/container/spmx_description.h"

#include "base/VLXMLParser.h"
#include "base/text.h"
#include "document/container/spmx_escapes.h"
#include "document/container/spmx_layout.h"
#include "document/container/spmx_limits.h"

#include <cmath>
#include <sstream>

namespace vldv::document {

namespace {

constexpr unsigned untypedSize = 2; // what old files mean when they say nothing: 16-bit heights

/// Binds the elements of main.xml to a description.
class spmx_parser : public VLXMLParser {
public:
    explicit spmx_parser(bool isRewritten_) : isRewritten(isRewritten_) {}

    void init() override
    {
        add_start_handler("stream", &spmx_parser::xmlh_stream);
        add_start_handler("var", &spmx_parser::xmlh_var);
        add_end_handler("var", &spmx_parser::xmlh_var_end);
        add_start_handler("depends", &spmx_parser::xmlh_text);
        add_end_handler("depends", &spmx_parser::xmlh_depends_end);
        add_start_handler("subimage", &spmx_parser::xmlh_text);
        add_end_handler("subimage", &spmx_parser::xmlh_subimage_end);
        add_start_handler("dimension", &spmx_parser::xmlh_dimension);
        add_end_handler("dimension", &spmx_parser::xmlh_dimension_end);
        add_start_handler("axis", &spmx_parser::xmlh_axis);
        add_start_handler("data", &spmx_parser::xmlh_data);
        add_end_handler("stream", &spmx_parser::xmlh_stream_end);
    }

    void OnXMLUnparsedEntity(const char* entity, const char*, const char* systemId, const char*, const char*) override
    {
        if (entities.size() >= spmx_limits::streams)
            return fail(base::formatted("more than %zu entities", spmx_limits::streams));
        std::string file = text(systemId);
        if (file.starts_with("./")) file.erase(0, 2);
        entities[entity] = file;
    }

    spmx_description result;

private:
    std::string text(const char* raw) const { return isRewritten ? spmx_escapes::restored(raw) : raw; }
    std::string attribute(const attributes& found, const char* name) const
    {
        const auto at = found.find(name);
        return at == found.end() ? std::string() : text(at->second);
    }
    /// A missing attribute has a default; one that is no number of 32 bits is refused.
    unsigned number(const attributes& found, const char* name, unsigned otherwise)
    {
        if (!found.contains(name)) return otherwise;
        const std::string digits = attribute(found, name);
        const auto value = base::whole_integer(digits);
        if (value && *value >= 0 && *value <= 0xffffffffLL) return static_cast<unsigned>(*value);
        fail(std::string(name) + " \"" + digits + "\" is no number that can be used");
        return otherwise;
    }
    /// A number of an axis. Programs of another system write "1.#QNAN" for what is none.
    double axisNumber(const attributes& found, const char* name, double otherwise)
    {
        if (!found.contains(name)) return otherwise;
        const std::string digits = attribute(found, name);
        const auto value = base::leading_number(digits);
        if (value && std::fabs(*value) < 1e290 && digits.find('#') == std::string::npos) return *value;
        fail("the " + std::string(name) + " \"" + digits + "\" of an axis is no number that can be used");
        return otherwise;
    }
    described_stream* current() { return inStream ? &result.streams.back() : nullptr; }
    std::string collected()
    {
        const char* raw = pop_text_buf(nullptr);
        return raw ? text(raw) : std::string();
    }

    void xmlh_stream(const char*, const attributes& found)
    {
        if (inStream) return fail("a stream inside a stream");
        if (result.streams.size() >= spmx_limits::streams)
            return fail(base::formatted("more than %zu streams", spmx_limits::streams));
        result.streams.emplace_back();
        inStream = true;
        const std::string id = attribute(found, "id");
        SPMDataStream& stream = current()->stream;
        const unsigned blockSize = number(found, "blocksize", untypedSize);
        stream.Init(id.c_str(), attribute(found, "name").c_str(), SPM_VAR_ARRAY, 0u, blockSize);
        stream.offset = number(found, "offset", 0);
        stream.set_parameter_stream(attribute(found, "parameter").c_str());
        current()->rawEntry = id + ".raw";
    }
    void xmlh_stream_end(const char*)
    {
        if (!inStream) return;
        current()->stream.set_dependent_vars(dependents.data(), static_cast<unsigned>(dependents.size()));
        current()->stream.set_subimage_names(subimages.data(), static_cast<unsigned>(subimages.size()));
        dependents.clear();
        subimages.clear();
        inStream = false;
    }

    void xmlh_var(const char*, const attributes& found)
    {
        key = attribute(found, "id");
        push_text_buf();
    }
    void xmlh_var_end(const char*)
    {
        if (++texts > spmx_limits::texts) return fail(base::formatted("more than %zu texts", spmx_limits::texts));
        (inStream ? current()->strings : result.strings).insert_or_assign(key, collected());
    }

    void xmlh_text(const char*, const attributes&) { push_text_buf(); }
    void xmlh_depends_end(const char*) { appendName(dependents); }
    void xmlh_subimage_end(const char*) { appendName(subimages); }
    void appendName(std::vector<smart_string>& names)
    {
        if (++nameCount > spmx_limits::names) return fail(base::formatted("more than %zu names", spmx_limits::names));
        const std::string name = collected();
        if (inStream) names.emplace_back(name);
    }

    void xmlh_dimension(const char*, const attributes& found)
    {
        if (!inStream) return;
        if (inDimension) return fail("a dimension inside a dimension");
        inDimension = true;
        SPMDataStream& stream = current()->stream;
        if (stream.get_dimensions_number() >= spmx_limits::dimensions)
            return fail(base::formatted("the stream \"%s\" has more than %u dimensions", stream.get_name(),
                                        spmx_limits::dimensions));
        SPMDataStream::dimension dimension;
        dimension.length = number(found, "length", 1);
        if (dimension.length == 0) fail("the length of a dimension is 0");
        stream.set_dimension(stream.get_dimensions_number(), dimension);
    }
    void xmlh_dimension_end(const char*) { inDimension = false; }

    void xmlh_axis(const char*, const attributes& found)
    {
        if (!inStream) return;
        SPMDataStream& stream = current()->stream;
        VLAxesContainer& axes = inDimension ? stream.get_dimension(stream.get_dimensions_number() - 1) : stream.values;
        if (axes.get_axes_number() >= spmx_limits::axes)
            return fail(base::formatted("the stream \"%s\" has more than %u axes along one dimension",
                                        stream.get_name(), spmx_limits::axes));
        const double start = axisNumber(found, "start", 0.0), scale = axisNumber(found, "scale", 1.0);
        if (scale == 0.0) fail("the scale of an axis is 0");
        axes.set_axis(axes.get_axes_number(), VLAxis(start, scale, attribute(found, "units").c_str()));
    }

    void xmlh_data(const char*, const attributes& found)
    {
        if (!inStream) return;
        SPMVarArrayType type = SPM_ARRAY_VOID;
        const std::string content = attribute(found, "content");
        if (!content.empty() && !array_type_from_keyword(content.c_str(), type))
            return fail("content \"" + content + "\" is no element type");
        SPMDataStream& stream = current()->stream;
        stream.set_array_type(type);
        if (type != SPM_ARRAY_VOID) stream.value.block.elementSize = element_size(type);
        const auto at = found.find("ref");
        if (at == found.end()) return;
        const auto entity = entities.find(at->second);
        if (entity != entities.end())
            current()->rawEntry = entity->second;
        else
            current()->rawEntry = text(at->second) + ".raw";
    }

    bool isRewritten;
    bool inStream = false, inDimension = false;
    std::string key;
    std::size_t texts = 0, nameCount = 0;
    std::vector<smart_string> dependents, subimages; // of the stream that is being read
    std::map<std::string, std::string> entities;
};

base::read_result<spmx_description> parsed(std::string xml, bool isRewritten)
{
    spmx_parser parser(isRewritten);
    std::istringstream in(std::move(xml));
    if (!parser.load_xml(in)) return base::read_error{0, "main.xml is not understood: " + parser.get_error()};
    return std::move(parser.result);
}

/// How much a description tells. One that took several elements for the text of one tells less.
std::size_t count_of(const spmx_description& told)
{
    std::size_t count = told.strings.size() + told.streams.size();
    for (const described_stream& each : told.streams) {
        const SPMDataStream& stream = each.stream;
        count += *stream.get_name() ? 1 : 0;
        count += each.strings.size() + stream.dependent_vars().size() + stream.subimage_names().size();
        count += stream.values.get_axes_number() + stream.get_dimensions_number();
        for (unsigned i = 0; i < stream.get_dimensions_number(); ++i)
            count += stream.get_dimension(i).get_axes_number();
    }
    return count;
}

} // namespace

base::read_result<spmx_description> parse_spmx_description(std::string_view xml)
{
    std::string converted;
    if (!base::is_utf8(xml)) xml = converted = base::cp1252_to_utf8(xml);
    auto rewritten = well_formed_spmx(xml);
    if (!rewritten) return rewritten.error();
    if (!*rewritten) return parsed(std::string(xml), false);
    auto own = parsed(std::move((*rewritten)->xml), true);
    if (own && !(*rewritten)->isDoubtful) return own;
    // Another program's layout that looks like this one; without escapes the text is hardly proper XML by chance.
    auto plain = parsed(std::string(xml), false);
    return plain && (!own || count_of(*plain) > count_of(*own)) ? std::move(plain) : std::move(own);
}

} // namespace vldv::document
