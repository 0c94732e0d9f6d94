#include "document/examples.h"

namespace document {

std::vector<example> make_examples()
{
    std::vector<example> all;
    for (const auto make :
         {make_atomic_steps, make_grains, make_two_directions, make_section, make_force_curve, make_force_volume})
        all.push_back(make());
    return all;
}

} // namespace document
