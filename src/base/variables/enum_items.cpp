#include "base/variables/enum_items.h"

#include "base/text.h"

using namespace vldv;

SPMVar::enum_items::enum_items(const std::vector<base::declared_item>& source) : declared(source)
{
    for (const base::declared_item& item : declared) {
        if (!base::is_function_item(item)) {
            texts.push_back(item);
            continue;
        }
        const std::vector<base::declared_item> supplied = base::supplied_items(item);
        texts.insert(texts.end(), supplied.begin(), supplied.end());
    }
    for (std::size_t i = 0; i < texts.size(); ++i)
        numbers.push_back(base::whole_number(texts[i].key).value_or(static_cast<double>(i)));
    if (numbers.empty()) numbers.push_back(0.0);
}
