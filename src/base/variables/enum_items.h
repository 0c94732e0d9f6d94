#pragma once
#include "base/SPMVar.h"
#include "base/variables/declaration.h"
#include <vector>

/// What an enum offers. Items that a function supplies are fetched when the variable is declared.
struct SPMVar::enum_items {
    std::vector<vldv::base::declared_item> declared; ///< as in the declaration, with the functions that supply items
    std::vector<vldv::base::declared_item> texts;    ///< what there is to choose
    std::vector<double> numbers; ///< one a choice, never empty: its key when that is a number, else its place

    explicit enum_items(const std::vector<vldv::base::declared_item>& source);
};
