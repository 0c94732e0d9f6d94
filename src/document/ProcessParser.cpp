#include "document/ProcessParser.h"

#include "platform/files/interface_directory.h"

#include <fstream>

using namespace vldv;

CProcessParser::CProcessParser() = default;

bool CProcessParser::loadInterfaceFile(const std::string& name)
{
    std::ifstream in(platform::find_interface_file(name), std::ios::binary);
    return in && load_xml(in);
}

void CProcessParser::applyLabels(SPMVar& variable) const
{
    if (const auto label = labels.find(variable.get_name()); label != labels.end())
        variable.set_description(label->second.c_str());
    const auto items = itemLabels.find(variable.get_name());
    if (items == itemLabels.end()) return;
    for (unsigned i = 0; i < variable.get_enum_size(); ++i)
        if (const auto label = items->second.find(variable.get_enum_key(i)); label != items->second.end())
            variable.set_enum_label(i, label->second.c_str());
}

void CProcessParser::init()
{
    currentVariable.clear(); // a file that broke off inside a variable left it open
    add_start_handler("var", &CProcessParser::xmlh_var);
    add_end_handler("var", &CProcessParser::xmlh_var_end);
    add_start_handler("item", &CProcessParser::xmlh_item);
}

void CProcessParser::xmlh_var(const char*, const attributes& found)
{
    const auto id = found.find("id"), name = found.find("name");
    if (id == found.end() || name == found.end()) return;
    currentVariable = id->second;
    labels[currentVariable] = name->second;
}

void CProcessParser::xmlh_var_end(const char*) { currentVariable.clear(); }

void CProcessParser::xmlh_item(const char*, const attributes& found)
{
    const auto key = found.find("filter"), name = found.find("name");
    if (key != found.end() && name != found.end()) itemLabels[currentVariable][key->second] = name->second;
}
