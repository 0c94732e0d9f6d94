#include "document/container/spmx_layout.h"

#include "base/text.h"
#include "document/container/spmx_escapes.h"
#include "document/container/spmx_limits.h"

#include <algorithm>
#include <array>
#include <map>
#include <span>
#include <vector>

namespace vldv::document {

namespace {

/// Finds one word again and again from places that only move forward: a walk over the text, however often it is asked.
class forward_search {
public:
    forward_search(std::string_view text_, std::string_view word_) : text(text_), word(word_) {}

    /// The first at or behind `from`, or npos.
    std::size_t next(std::size_t from)
    {
        if (!found || *found < from) found = text.find(word, from);
        return *found;
    }

private:
    std::string_view text, word;
    std::optional<std::size_t> found;
};

/// Walks the file from one element of the layout to the next.
class layout_scanner {
public:
    explicit layout_scanner(std::string_view text_) : text(text_), entityMiddles(text_, entityMiddle)
    {
        out.reserve(text.size() + text.size() / 8);
    }

    base::read_result<std::optional<rewritten_spmx>> run()
    {
        const bool begins = prolog() && root();
        if (entities.size() > spmx_limits::streams)
            return base::read_error{0,
                                    base::formatted("main.xml declares more than %zu entities", spmx_limits::streams)};
        while (begins && good && !finished) element();
        if (!begins || !good) return std::optional<rewritten_spmx>();
        return std::optional(rewritten_spmx{std::move(out), isDoubtful || streams < entities.size()});
    }

private:
    static constexpr std::size_t maxIdBytes = 4096;
    /// Places at which an id may end that are looked at; ids that look like more of the format are not found.
    static constexpr int maxIdEnds = 16;
    static constexpr std::string_view entityMiddle = " SYSTEM \"./";
    static constexpr std::array<std::string_view, 10> elementStarts = {
        "<var id=\"", "<stream",    "</stream>",    "<depends>", "<subimage>",
        "<axis",      "<dimension", "</dimension>", "<data",     "</spmx>"};
    static constexpr std::array<std::string_view, 5> streamAttributes = {"id", "name", "blocksize", "offset",
                                                                         "parameter"};
    static constexpr std::array<std::string_view, 3> axisAttributes = {"start", "scale", "units"};
    static constexpr std::array<std::string_view, 1> dimensionAttributes = {"length"};
    static constexpr std::array<std::string_view, 2> dataAttributes = {"content", "ref"};

    std::string_view rest() const { return text.substr(position); }
    bool accept(std::string_view expected)
    {
        if (!rest().starts_with(expected)) return false;
        position += expected.size();
        return true;
    }
    void skipSpace() { position = std::min(text.find_first_not_of(" \t\r\n", position), text.size()); }

    /// Whether a line end and an element of the layout stand at `at`.
    bool lineEndsAt(std::size_t at) const
    {
        std::string_view ahead = text.substr(at);
        if (!ahead.starts_with(lineEnd)) return false;
        ahead.remove_prefix(lineEnd.size());
        ahead.remove_prefix(std::min(ahead.find_first_not_of(" \t"), ahead.size()));
        return std::ranges::any_of(elementStarts, [&](std::string_view start) { return ahead.starts_with(start); });
    }

    std::string escaped(std::string_view taken)
    {
        for (std::size_t at = taken.find('<'); at != std::string_view::npos; at = taken.find('<', at + 1))
            isDoubtful |= std::ranges::any_of(
                elementStarts, [&](std::string_view start) { return taken.substr(at).starts_with(start); });
        return spmx_escapes::text(taken);
    }

    /// The text up to a terminator that ends its line; the terminator is skipped.
    std::optional<std::string_view> takeLineText(std::string_view terminator)
    {
        for (std::size_t end = text.find(terminator, position); end != std::string_view::npos;
             end = text.find(terminator, end + 1)) {
            if (!lineEndsAt(end + terminator.size())) continue;
            const std::string_view taken = text.substr(position, end - position);
            position = end + terminator.size();
            return taken;
        }
        good = false;
        return std::nullopt;
    }

    bool prolog()
    {
        if (text.starts_with("\xEF\xBB\xBF")) position = 3;
        const std::size_t firstEnd = text.find('\n');
        if (firstEnd != std::string_view::npos && firstEnd > 0 && text[firstEnd - 1] == '\r') lineEnd = "\r\n";
        skipSpace();
        if (rest().starts_with("<?xml")) position = std::min(text.find("?>", position), text.size() - 2) + 2;
        skipSpace();
        const std::size_t subset = text.find('[', position);
        if (!rest().starts_with("<!DOCTYPE") || subset == std::string_view::npos) return false;
        position = subset + 1;
        out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE spmx [\n<!NOTATION spmRaw SYSTEM \"raw\">\n";
        for (;;) {
            skipSpace();
            if (accept("]>")) return true;
            if (rest().starts_with("<!NOTATION")) {
                const std::size_t end = text.find('>', position);
                if (end == std::string_view::npos) return false;
                position = end + 1;
            } else if (!accept("<!ENTITY ") || !entity() || entities.size() > spmx_limits::streams)
                return false;
        }
    }

    /// ID SYSTEM "./ID.raw" NDATA spmRaw> with any text for ID: the two copies tell where it ends.
    bool entity()
    {
        constexpr std::string_view end = ".raw\" NDATA spmRaw>";
        std::size_t at = entityMiddles.next(position);
        for (int i = 0; i < maxIdEnds && at != std::string_view::npos && at - position <= maxIdBytes; ++i) {
            const std::string_view id = text.substr(position, at - position);
            const std::string_view second = text.substr(at + entityMiddle.size());
            if (second.starts_with(id) && second.substr(id.size()).starts_with(end)) {
                declare(id, std::string(id) + ".raw");
                position = at + entityMiddle.size() + id.size() + end.size();
                return true;
            }
            at = text.substr(0, std::min(text.size(), position + maxIdBytes + entityMiddle.size()))
                     .find(entityMiddle, at + 1);
        }
        return foreignEntity();
    }

    /// A file name that does not repeat the id: both are plain then.
    bool foreignEntity()
    {
        constexpr std::string_view middle = " SYSTEM \"";
        const std::size_t at = text.find(middle, position), close = text.find('"', at + middle.size());
        const std::size_t end = text.find('>', close);
        if (at == std::string_view::npos || close == std::string_view::npos || end == std::string_view::npos)
            return false;
        std::string_view file = text.substr(at + middle.size(), close - at - middle.size());
        if (file.starts_with("./")) file.remove_prefix(2);
        declare(base::trimmed(text.substr(position, at - position)), file);
        position = end + 1;
        return true;
    }

    void declare(std::string_view id, std::string_view file)
    {
        out += base::formatted("<!ENTITY e%zu SYSTEM \"", entities.size());
        out += spmx_escapes::literal(file) + "\" NDATA spmRaw>\n";
        entityNumbers.emplace(id, entities.size());
        entities.emplace_back(id);
    }

    bool root()
    {
        skipSpace();
        const std::size_t end = text.find('>', position);
        if (!rest().starts_with("<spmx") || end == std::string_view::npos) return false;
        position = end + 1;
        out += "]>\n<spmx>\n";
        return true;
    }

    void element()
    {
        skipSpace();
        if (accept("<var id=\"")) return variable();
        if (accept("<depends>")) return named("depends");
        if (accept("<subimage>")) return named("subimage");
        if (accept("<stream")) return attributes("stream", streamAttributes);
        if (accept("<axis")) return attributes("axis", axisAttributes);
        if (accept("<dimension")) return attributes("dimension", dimensionAttributes);
        if (accept("<data")) return attributes("data", dataAttributes);
        if (accept("</stream>")) return close("</stream>\n");
        if (accept("</dimension>")) return close("</dimension>\n");
        finished = accept("</spmx>");
        good = finished;
        if (finished) out += "</spmx>\n";
    }

    void close(std::string_view tag) { out += tag; }

    /// <var id="KEY">VALUE</var> or, with an empty value, <var id="KEY"/>
    void variable()
    {
        bool isEmpty = false;
        std::size_t end = text.find('"', position);
        for (; end != std::string_view::npos; end = text.find('"', end + 1)) {
            const std::string_view behind = text.substr(end + 1);
            isEmpty = behind.starts_with("/>") && lineEndsAt(end + 3);
            if (isEmpty || behind.starts_with('>')) break;
        }
        if (end == std::string_view::npos) {
            good = false;
            return;
        }
        out += "<var id=\"" + escaped(text.substr(position, end - position)) + "\">";
        position = end + (isEmpty ? 3 : 2);
        if (!isEmpty)
            if (const auto value = takeLineText("</var>")) out += escaped(*value);
        out += "</var>\n";
    }

    void named(const std::string& name)
    {
        if (const auto value = takeLineText("</" + name + ">"))
            out += "<" + name + ">" + escaped(*value) + "</" + name + ">\n";
    }

    /// Where an attribute that the tag has not had yet begins at `at`: the length of ` name="`, or 0.
    std::size_t attributeAt(std::size_t at, std::string_view& name, const std::vector<std::string_view>& seen) const
    {
        if (at >= text.size() || text[at] != ' ') return 0;
        // In the order of the layout: behind "parameter" there is no "name", whatever the text looks like.
        const auto last = seen.empty() ? tagAttributes.begin() : std::ranges::find(tagAttributes, seen.back()) + 1;
        for (const std::string_view known : std::span(last, tagAttributes.end())) {
            const std::string_view ahead = text.substr(at + 1);
            if (!ahead.starts_with(known) || !ahead.substr(known.size()).starts_with("=\"")) continue;
            name = known;
            return known.size() + 3;
        }
        return 0;
    }

    /// End of an opening tag at `at`: ">" or "/>" with a line of the layout behind, or 0.
    std::size_t tagEndAt(std::size_t at) const
    {
        const std::string_view ahead = text.substr(std::min(at, text.size()));
        const std::size_t length = ahead.starts_with("/>") ? 2 : ahead.starts_with('>') ? 1 : 0;
        return length && lineEndsAt(at + length) ? length : 0;
    }

    bool valueEndsAt(std::size_t quote, const std::vector<std::string_view>& seen) const
    {
        std::string_view next;
        return text.substr(quote).starts_with('"') && (attributeAt(quote + 1, next, seen) || tagEndAt(quote + 1));
    }

    /// The quote that ends an attribute's value. The entities tell the id of each stream in order, so that an id which
    /// looks like attributes is still found.
    std::size_t valueEnd(std::string_view name, const std::vector<std::string_view>& seen) const
    {
        if ((name == "id" || name == "ref") && streams > 0 && streams <= entities.size()) {
            const std::string& id = entities[streams - 1];
            if (rest().starts_with(id) && valueEndsAt(position + id.size(), seen)) return position + id.size();
        }
        std::size_t end = text.find('"', position);
        while (end != std::string_view::npos && !valueEndsAt(end, seen)) end = text.find('"', end + 1);
        return end;
    }

    /// The attributes of a tag, each value up to the quote that another attribute or the tag's end follows.
    void attributes(const std::string& tag, std::span<const std::string_view> known)
    {
        tagAttributes = known;
        out += "<" + tag;
        if (tag == "stream") ++streams;
        std::string_view name;
        std::vector<std::string_view> seen;
        while (const std::size_t length = attributeAt(position, name, seen)) {
            position += length;
            seen.push_back(name);
            const std::size_t end = valueEnd(name, seen);
            if (end == std::string_view::npos) break;
            appendAttribute(name, text.substr(position, end - position));
            position = end + 1;
        }
        isDoubtful |= tag == "stream" && std::ranges::find(seen, streamAttributes.front()) == seen.end();
        const std::size_t end = tagEndAt(position);
        good = end != 0;
        out += text.substr(position, end);
        out += '\n';
        position += end;
    }

    void appendAttribute(std::string_view name, std::string_view value)
    {
        out += ' ';
        out += name;
        out += "=\"";
        const auto entity = name == "ref" ? entityNumbers.find(std::string(value)) : entityNumbers.end();
        if (entity != entityNumbers.end())
            out += "e" + std::to_string(entity->second);
        else
            out += escaped(value);
        out += '"';
    }

    std::string_view text;
    forward_search entityMiddles;
    std::size_t position = 0;
    std::string out;
    std::vector<std::string> entities;
    std::map<std::string, std::size_t> entityNumbers;
    std::string_view lineEnd = "\n";                 // of the whole file; texts may hold the other kind
    std::span<const std::string_view> tagAttributes; // of the tag that is being read
    std::size_t streams = 0;                         // whose opening tag has been met
    bool good = true, finished = false, isDoubtful = false;
};

} // namespace

base::read_result<std::optional<rewritten_spmx>> well_formed_spmx(std::string_view text)
{
    return layout_scanner(text).run();
}

} // namespace vldv::document
