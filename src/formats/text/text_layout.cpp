#include "base/text.h"
#include "formats/text/text_lines.h"
#include "formats/text/text_numbers.h"

#include <algorithm>
#include <cmath>

// What separates the numbers of a text, what marks their decimals and what groups their digits.

namespace vldv::formats {

namespace {

constexpr std::size_t group = 3; ///< digits

/// True when the comma or point at `i` could part thousands as well as be a decimal mark: "1,234", never "0,125",
/// "12,5" or "1,234e5".
bool may_part_thousands(std::string_view line, std::size_t i) noexcept
{
    std::size_t before = 0, after = 0;
    while (before < i && is_digit(line[i - before - 1])) ++before;
    while (i + after + 1 < line.size() && is_digit(line[i + after + 1])) ++after;
    const char next = i + after + 1 < line.size() ? line[i + after + 1] : ' ';
    const bool isExponent = next == 'e' || next == 'E' || next == 'd' || next == 'D';
    return after == group && before > 0 && before <= group && line[i - before] != '0' && !isExponent;
}

/// Digits alone, behind a sign or not.
bool is_whole_number(std::string_view field) noexcept
{
    if (field.starts_with('-')) field.remove_prefix(1);
    return !field.empty() && std::ranges::all_of(field, is_digit);
}

/// What the fields between tabs or semicolons tell.
struct field_survey {
    bool blanksPart = false;                       ///< "1 234": blanks that part thousands
    bool blanksSeparate = false;                   ///< "1 2": blanks that cannot
    bool zeroGroups = false;                       ///< "1 000": a group that is no number of its own
    bool smallWholes = false, largeWholes = false; ///< digits alone, below 1000 or not
    /// A bit for each of the first columns: those with whole numbers below 1000, with groups that end in 0, with
    /// points.
    std::uint64_t smallWholeColumns = 0, roundGroupColumns = 0, pointColumns = 0;

    void add(std::string_view line) noexcept
    {
        constexpr std::size_t mostColumns = 64;
        for (std::size_t column = 0;; ++column) {
            const std::size_t end = std::min(line.find_first_of(";\t"), line.size());
            addField(base::trimmed(line.substr(0, end)), std::uint64_t{column < mostColumns} << column % mostColumns);
            if (end == line.size()) break;
            line.remove_prefix(end + 1);
        }
        ++lines;
    }
    /// "900" above "1,000": whoever writes no decimals of the one writes none of the other.
    bool showsThousands() const noexcept { return (smallWholeColumns & roundGroupColumns) != 0; }
    bool hasPointsBesideWholes() const noexcept { return (smallWholeColumns & pointColumns) != 0; }

private:
    void addField(std::string_view field, std::uint64_t columnBit) noexcept
    {
        if (field.find(' ') != std::string_view::npos) {
            const bool isGrouped = grouped_number(field, ' ', false) || grouped_number(field, ' ', true);
            (isGrouped ? blanksPart : blanksSeparate) = true;
            zeroGroups = zeroGroups || (isGrouped && field.find(" 0") != std::string_view::npos);
        } else if (const std::size_t mark = field.find_first_of(",."); mark != std::string_view::npos) {
            if (mark + group < field.size() && field[mark + group] == '0') roundGroupColumns |= columnBit;
            if (field[mark] == '.') pointColumns |= columnBit;
        } else if (is_whole_number(field)) {
            addWhole(field, columnBit);
        }
    }

    void addWhole(std::string_view digits, std::uint64_t columnBit) noexcept
    {
        const double number = number_of_field(digits, false).value_or(0.0);
        const bool isSmall = std::fabs(number) < 1000.0;
        // 0 is written alike everywhere, and the numbers of rows are no values.
        if (number == 0.0 || (isSmall && columnBit == 1 && isRowNumber(number))) return;
        (isSmall ? smallWholes : largeWholes) = true;
        if (isSmall) smallWholeColumns |= columnBit;
    }

    bool isRowNumber(double number) const noexcept
    {
        const auto row = static_cast<double>(lines);
        return number == row || number == row + 1.0;
    }

    std::size_t lines = 0;
};

/// What the commas, tabs and blanks of the lines of numbers tell.
struct mark_survey {
    std::size_t lines = 0;
    std::size_t doubleTabs = 0;
    std::size_t pointLines = 0;                            ///< with a decimal point
    std::size_t innerLines = 0, loneLines = 0;             ///< with commas between digits, with others
    std::size_t blankLines = 0;                            ///< with a blank between two words
    bool manyCommas = false;                               ///< two in one word between blanks
    bool decimalCommas = false, decimalPoints = false;     ///< that cannot part thousands
    bool pointsBeforeComma = false;                        ///< "1.234,5": the points part thousands
    bool commasBeforePoint = false;                        ///< "1,234.5": the commas do
    bool semicolons = false, tabs = false, blanks = false; ///< between two fields
    std::size_t fields = 0;                                ///< of the first line, when commas separate
    bool sameFields = true;
    field_survey betweenTabs;

    void add(std::string_view line) noexcept;
    bool hasCommas() const noexcept { return innerLines != 0 || loneLines != 0; }
    bool hasFields() const noexcept { return semicolons || tabs; }
    /// Commas beside blanks and ends separate. A few of them among numbers that something else separates are damage.
    bool haveLonesMeaning() const noexcept { return loneLines != 0 && !isStray(loneLines); }
    /// So are a few points among numbers with decimal commas.
    bool havePointsMeaning() const noexcept { return pointLines != 0 && !(decimalCommas && isStray(pointLines)); }
    /// True when some field tells that points part thousands before a decimal comma, and none that they do not.
    bool havePartingPoints() const noexcept
    {
        return pointsBeforeComma && !commasBeforePoint && !decimalPoints && !manyCommas && !haveLonesMeaning();
    }
    /// False while further lines may tell what commas and blanks are.
    bool isClear() const noexcept
    {
        const bool areBlanksClear = !betweenTabs.blanksPart || betweenTabs.blanksSeparate || betweenTabs.zeroGroups;
        return areBlanksClear && (!hasCommas() || pointLines != 0 || loneLines != 0 || manyCommas ||
                                  (decimalCommas && (semicolons || tabs || blanks || !sameFields)));
    }

private:
    struct line_marks {
        std::size_t wordCommas = 0;
        bool wordPoint = false; ///< since the last blank, tab or semicolon
        bool point = false, inner = false, lone = false, blank = false;
    };
    void lookAt(std::string_view line, std::size_t i, line_marks& marks) noexcept;
    bool isStray(std::size_t few) const noexcept
    {
        return (hasFields() || 2 * blankLines > lines) && 2 * few < innerLines;
    }
};

void mark_survey::lookAt(std::string_view line, std::size_t i, line_marks& marks) noexcept
{
    const char c = line[i];
    const bool last = i + 1 == line.size();
    if (c == ' ' || c == '\t' || c == ';') {
        marks.wordCommas = 0;
        marks.wordPoint = false;
    }
    if (c == ',') {
        pointsBeforeComma = pointsBeforeComma || marks.wordPoint;
        const bool between = i > 0 && is_digit(line[i - 1]) && !last && is_digit(line[i + 1]);
        (between ? marks.inner : marks.lone) = true;
        manyCommas = manyCommas || (between && ++marks.wordCommas > 1);
        decimalCommas = decimalCommas || (between && !may_part_thousands(line, i));
    }
    if (c == '.') {
        marks.point = marks.wordPoint = true;
        commasBeforePoint = commasBeforePoint || marks.wordCommas != 0;
        decimalPoints = decimalPoints || !may_part_thousands(line, i);
    }
    if (c == ';' && !last) semicolons = true;
    if (c == '\t') tabs = true;
    if (c == ' ') marks.blank = true;
}

void mark_survey::add(std::string_view line) noexcept
{
    line = base::trimmed(line);
    line_marks marks;
    std::size_t commaCount = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        lookAt(line, i, marks);
        if (line[i] == ',' && i + 1 < line.size()) ++commaCount;
    }
    pointLines += marks.point;
    innerLines += marks.inner;
    loneLines += marks.lone;
    blankLines += marks.blank;
    blanks = blanks || marks.blank;
    if (line.find("\t\t") != std::string_view::npos) ++doubleTabs;
    if (lines == 0) fields = commaCount + 1;
    sameFields = sameFields && fields == commaCount + 1;
    betweenTabs.add(line);
    ++lines;
}

char separator_of(const mark_survey& survey, bool commasSeparate) noexcept
{
    if (survey.semicolons) return ';';
    if (commasSeparate) return ',';
    return survey.tabs && survey.doubleTabs < survey.lines ? '\t' : ' ';
}

/// Commas that could be either. They part thousands where whole numbers below 1000 stand beside them and none above;
/// but semicolons separate where commas are decimal marks, so there a column has to show it.
void settle_unsure_commas(const field_survey& fields, number_layout& layout) noexcept
{
    layout.doubt = number_doubt::decimalCommas;
    if (!fields.smallWholes || fields.largeWholes) return;
    if (layout.separator == ';' && !fields.showsThousands()) return;
    layout.decimalComma = false;
    layout.groupedDigits = true;
    layout.doubt = fields.showsThousands() ? number_doubt::none : number_doubt::partingCommas;
}

/// Points that could part thousands: they do where a column shows it, and are told where whole numbers stand beside.
void settle_unsure_points(const field_survey& fields, number_layout& layout) noexcept
{
    layout.groupedPoints = fields.showsThousands();
    if (!layout.groupedPoints && fields.hasPointsBesideWholes()) layout.doubt = number_doubt::decimalPoints;
}

number_layout layout_of(const mark_survey& survey) noexcept
{
    number_layout layout;
    const field_survey& fields = survey.betweenTabs;
    const bool hasFields = survey.hasFields(), hasCommas = survey.hasCommas();
    const bool mayBeInNumbers = hasCommas && !survey.haveLonesMeaning();
    layout.groupedPoints = mayBeInNumbers && survey.havePartingPoints() && (hasFields || survey.blanks);
    // Without any other separator "1,5" could be either; it is two fields only when all lines agree.
    const bool areDecimal = mayBeInNumbers && !survey.havePointsMeaning() && !survey.manyCommas &&
                            (hasFields || survey.blanks || !survey.sameFields || survey.fields < 2);
    layout.decimalComma = layout.groupedPoints || areDecimal;
    // Between tabs or semicolons a comma within digits is part of a number, never a separator.
    layout.groupedDigits = mayBeInNumbers && !layout.decimalComma && hasFields;
    layout.separator = separator_of(survey, hasCommas && !layout.decimalComma && !layout.groupedDigits);
    const bool isFielded = layout.separator == ';' || layout.separator == '\t';
    layout.groupedBlanks = isFielded && fields.blanksPart && !fields.blanksSeparate;
    if (layout.groupedBlanks && !fields.zeroGroups)
        layout.doubt = number_doubt::partingBlanks;
    else if (layout.decimalComma && !layout.groupedPoints && !survey.decimalCommas && !layout.groupedBlanks)
        settle_unsure_commas(isFielded ? fields : field_survey{}, layout);
    else if (isFielded && !hasCommas && survey.pointLines != 0 && !survey.decimalPoints && !layout.groupedBlanks)
        settle_unsure_points(fields, layout);
    return layout;
}

} // namespace

number_layout detect_layout(std::string_view text, std::size_t enough)
{
    mark_survey survey;
    line_cursor lines(text);
    std::string_view line;
    while (lines.next(line)) {
        if (survey.lines >= enough && survey.isClear()) break;
        if (is_number_line(line)) survey.add(line);
    }
    return layout_of(survey);
}

const char* told_doubt(number_doubt doubt) noexcept
{
    switch (doubt) {
    case number_doubt::decimalCommas:
        return "every comma could part thousands (\"1,234\"); all were read as decimal marks";
    case number_doubt::partingCommas:
        return "every comma could be a decimal mark (\"1,234\"); all were read as parting thousands, because whole "
               "numbers below 1000 stand beside them";
    case number_doubt::decimalPoints:
        return "every point could part thousands (\"1.234\"), beside whole numbers below 1000; all were read as "
               "decimal "
               "marks";
    case number_doubt::partingBlanks:
        return "blanks within the fields were read as parting thousands (\"1 234\")";
    case number_doubt::none:
        break;
    }
    return nullptr;
}

} // namespace vldv::formats
