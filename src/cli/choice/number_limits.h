#pragma once
#include <limits>

namespace CLI {
class Validator;
}

namespace vldv::cli {

/// Limits of numbers on the command line. A refusal says in words what is allowed: "expected a whole number, 0 or more,
/// not "-1"". None takes infinities or what is no number. Whole numbers are decimal also with zeros in front; as they
/// change the text for the parser they go to `transform`, the others to `check`.
CLI::Validator whole_number(long long least, long long most = std::numeric_limits<int>::max());
CLI::Validator number_at_least(double least);

} // namespace vldv::cli
