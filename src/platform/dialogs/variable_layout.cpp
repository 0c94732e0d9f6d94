#include "platform/dialogs/variable_layout.h"

#include "base/VLXMLParser.h"
#include "base/text.h"
#include "platform/files/interface_directory.h"
#include "resources/strings.h"

#include <fstream>
#include <sstream>

namespace vldv::platform {

namespace {

constexpr long long maxUnits = 10000; ///< of a coordinate: far beyond any screen

class layout_parser : public VLXMLParser {
public:
    void init() override
    {
        add_start_handler("varlist", &layout_parser::onRoot);
        add_start_handler("defaultvarlist", &layout_parser::onGrid);
        add_start_handler("userbutton", &layout_parser::onUserButton);
        add_start_handler("button", &layout_parser::onButton);
    }
    void OnXMLStartElement(const char* element, const char** found) override
    {
        if (!hasRoot && std::string_view(element) != "varlist") return fail("the root is no \"varlist\"");
        VLXMLParser::OnXMLStartElement(element, found);
    }

    variable_layout layout;
    bool hasGrid = false;

private:
    static std::string text(const attributes& found, const char* name)
    {
        const auto at = found.find(name);
        return at == found.end() ? std::string() : at->second;
    }

    int units(const char* element, const attributes& found, const char* name)
    {
        const auto number = base::whole_integer(text(found, name));
        const bool good = number && *number >= 0 && *number <= maxUnits;
        if (!good) fail(std::string(element) + ": " + name + " is no number of dialog units");
        return good ? static_cast<int>(*number) : 0;
    }

    RECT place(const char* element, const attributes& found)
    {
        const int left = units(element, found, "left"), top = units(element, found, "top");
        return CRect({left, top}, CSize{units(element, found, "width"), units(element, found, "height")});
    }

    void onRoot(const char*, const attributes& found)
    {
        if (!hasRoot) layout.title = text(found, "name");
        hasRoot = true;
    }
    void onGrid(const char* element, const attributes& found)
    {
        layout.grid = place(element, found);
        layout.nameHeading = text(found, "parname");
        layout.valueHeading = text(found, "valname");
        hasGrid = true;
    }
    void onUserButton(const char* element, const attributes& found)
    {
        layout.buttons.push_back(
            {layout_button::kind::user, place(element, found), text(found, "id"), text(found, "name")});
        if (layout.buttons.back().id.empty()) fail("userbutton: the id is missing");
    }
    void onButton(const char* element, const attributes& found)
    {
        const std::string type = text(found, "type");
        if (type != "ok" && type != "cancel") return fail("button: the type is neither \"ok\" nor \"cancel\"");
        layout.buttons.push_back({type == "ok" ? layout_button::kind::ok : layout_button::kind::cancel,
                                  place(element, found),
                                  {},
                                  text(found, "name")});
    }

    bool hasRoot = false;
};

} // namespace

std::optional<variable_layout> parse_variable_layout(std::istream& in, std::string* problem)
{
    layout_parser parser;
    const bool loaded = parser.load_xml(in);
    if (loaded && parser.hasGrid) return std::move(parser.layout);
    if (problem) *problem = loaded ? "there is no \"defaultvarlist\"" : parser.get_error();
    return std::nullopt;
}

variable_layout built_in_layout(unsigned id)
{
    std::istringstream xml(string_resource(id));
    return parse_variable_layout(xml).value_or(variable_layout());
}

variable_layout load_variable_layout(const std::string& file, unsigned builtIn)
{
    std::ifstream in(find_interface_file(file), std::ios::binary);
    if (in)
        if (auto layout = parse_variable_layout(in)) return *layout;
    return built_in_layout(builtIn);
}

} // namespace vldv::platform
