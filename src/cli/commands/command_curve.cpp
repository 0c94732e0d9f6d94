// vldv curve: calculations on curves and on lines through images.
#include "base/text.h"
#include "cli/choice/word_choice.h"
#include "cli/commands.h"
#include "cli/results/curve_source.h"
#include "curves/figures/curve_spectrum.h"
#include "curves/figures/math_function.h"
#include "curves/figures/trend_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>

namespace vldv::cli {

namespace {

using json = nlohmann::ordered_json;

struct math_options : curve_options {
    std::string operation;
    curves::spectrum_mode mode = curves::spectrum_mode::power;
};

/// What a call prints of one section.
struct outcome {
    json lines = json::array();
    std::string text;
};

constexpr int floatDigits = 9;

std::string row_of(std::initializer_list<double> numbers, int digits = floatDigits)
{
    std::string row;
    for (const double number : numbers) row += (row.empty() ? "" : "\t") + base::general(number, digits);
    return row + '\n';
}

std::string title_of(unsigned sub) { return "Subimage " + std::to_string(sub + 1) + '\n'; }

constexpr std::pair<const char*, curves::curve_function> functions[] = {
    {"differentiate", curves::convolve},
    {"autocorrelation", curves::autocorrelation_function},
    {"autocorrelation-cyclic", curves::cyclic_autocorrelation_function},
    {"structure", curves::structure_function},
    {"structure-cyclic", curves::cyclic_structure_function},
};

/// Samples of a curve that were not measured.
std::size_t count_gaps(const section& each, unsigned sub)
{
    return static_cast<std::size_t>(std::ranges::count(each.profile.gapsOf(sub), true));
}

bool has_samples(const section& each, unsigned sub) { return count_gaps(each, sub) < each.profile.curve(sub).size(); }

/// What looks at neighbours or pairs of samples has no figures of a curve with gaps.
bool is_whole(const section& each, unsigned sub) { return has_samples(each, sub) && count_gaps(each, sub) == 0; }

void add_unmeasured(const section& each, unsigned sub, outcome& out)
{
    const bool isNone = !has_samples(each, sub);
    const std::size_t missing = count_gaps(each, sub);
    out.lines.push_back({{"subimage", sub}, {"measured", false}});
    if (missing != 0) out.lines.back()["not_measured"] = missing;
    out.text += std::to_string(sub + 1) + (isNone ? "\tnot measured\n" : "\tnot measured throughout\n");
}

outcome calculate(const section& each, curves::curve_function function)
{
    curves::convolution_kernel kernel = curves::differenceKernel;
    const curves::physical_curves result =
        curves::call_function(each.profile, each.values, each.positions, function, &kernel);
    outcome out;
    for (unsigned k = each.first; k <= each.last; ++k) {
        if (!is_whole(each, k)) {
            add_unmeasured(each, k, out);
            continue;
        }
        const auto values = result.curve(k);
        out.lines.push_back(
            {{"subimage", k}, {"units", result.units}, {"values", std::vector<float>(values.begin(), values.end())}});
        out.text += title_of(k) + "X," + each.positions.get_units() + "\tY," + result.units + '\n';
        for (std::size_t i = 0; i < values.size(); ++i)
            out.text += row_of({each.positions.at(static_cast<double>(i)), static_cast<double>(values[i])});
    }
    return out;
}

outcome transform(const section& each, curves::spectrum_mode mode)
{
    const bool isPower = mode == curves::spectrum_mode::power;
    const std::string units = each.values.get_units() + std::string(isPower ? "^2" : "");
    outcome out;
    curves::curve_spectrum spectrum;
    for (unsigned k = each.first; k <= each.last; ++k) {
        if (!is_whole(each, k)) {
            add_unmeasured(each, k, out);
            continue;
        }
        curves::evaluate_spectrum(each.profile.curve(k), each.values, mode, spectrum);
        out.lines.push_back({{"subimage", k},
                             {"units", units},
                             {"spectrum", spectrum.values},
                             {"phase", spectrum.phase},
                             {"max", spectrum.max}});
        out.text += title_of(k) + "Periods\t" + (isPower ? "Power," : "Magnitude,") + units + "\tPhase,rad\n";
        for (std::size_t i = 0; i < spectrum.values.size(); ++i)
            out.text += row_of({static_cast<double>(i), static_cast<double>(spectrum.values[i]),
                                static_cast<double>(spectrum.phase[i])});
    }
    return out;
}

outcome find_trends(const section& each)
{
    const std::string units = each.values.get_units();
    outcome out;
    out.text = "Subimage\tA," + units + "\tB," + units + "\tR^2\tSD," + units + '\n';
    constexpr int digits = 12;
    for (unsigned k = each.first; k <= each.last; ++k) {
        if (!has_samples(each, k)) {
            add_unmeasured(each, k, out);
            continue;
        }
        const std::size_t missing = count_gaps(each, k);
        const curves::trend_line trend = curves::fit_trend(each.profile.curve(k), each.values, each.profile.gapsOf(k));
        out.lines.push_back({{"subimage", k},
                             {"units", units},
                             {"a", trend.line.A},
                             {"b", trend.line.B},
                             {"r2", trend.r2},
                             {"sd", trend.sd},
                             {"not_measured", missing}});
        out.text += std::to_string(k + 1) + '\t' + row_of({trend.line.A, trend.line.B, trend.r2, trend.sd}, digits);
        if (missing != 0) out.text += base::formatted("\tnot measured, left out: %zu\n", missing);
    }
    return out;
}

outcome outcome_of(const section& each, const math_options& options)
{
    if (options.operation == "spectrum") return transform(each, options.mode);
    if (options.operation == "trend") return find_trends(each);
    const auto* const found =
        std::ranges::find_if(functions, [&](const auto& entry) { return options.operation == entry.first; });
    return calculate(each, found->second);
}

int run(const math_options& options)
{
    return print_sections(options,
                          {[&](const section& each) -> json {
                               return {{"x", axis_json(each.positions)}, {"curves", outcome_of(each, options).lines}};
                           },
                           [&](const CStorageDoc&, const section& each) { return outcome_of(each, options).text; }});
}

} // namespace

void add_curve(CLI::App& app, int& status)
{
    auto options = std::make_shared<math_options>();
    CLI::App* command = app.add_subcommand("curve", "Calculate with curves and lines through images");
    std::vector<std::string> operations{"spectrum", "trend"};
    for (const auto& [name, function] : functions) operations.emplace_back(name);
    take_words(*command->add_option("--op", options->operation, "What is calculated")->required(), operations);
    take_words<curves::spectrum_mode>(
        *command->add_option("--mode", options->mode, "Of a spectrum (default: power)"),
        {{"power", curves::spectrum_mode::power}, {"magnitude", curves::spectrum_mode::magnitude}});
    add_curve_options(*command, *options, true);
    command->callback([options, command, &status] {
        if (command->count("--mode") != 0 && options->operation != "spectrum")
            throw CLI::ValidationError("--mode", "is of --op spectrum, not of --op " + options->operation);
        status = run(*options);
    });
}

} // namespace vldv::cli
