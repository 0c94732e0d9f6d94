#include "base/VLXMLParser.h"

#include "base/text.h"

#include <algorithm>
#include <exception>

#define XML_DTD // for the limits of entity expansion
#include <expat.h>

using namespace vldv;

namespace {

// Expat looks through an unfinished token again with each block. Blocks as large as all before them keep that in
// proportion to the text, however long a token is.
constexpr int smallestBlock = 1 << 16, largestBlock = 8 << 20;
constexpr int maxDepth = 1000;                    ///< of elements inside each other
constexpr std::size_t maxExpandedText = 1u << 20; ///< bytes
// expat counts expansions in attributes too, but also each "&lt;" as 1 byte beside its own 4. With these limits it
// never refuses a document whose entities expand to 1 MiB or less.
constexpr unsigned long long freeExpansion = 3u << 20;
constexpr float maxAmplification = 2.0f;

/// What stands in the document where `text` comes from is a reference to an entity that the document declares.
bool comes_from_entity(XML_Parser parser, std::string_view text)
{
    int offset = 0, size = 0;
    const char* const context = XML_GetInputContext(parser, &offset, &size);
    const int length = XML_GetCurrentByteCount(parser);
    if (!context || length <= 0 || length > size - offset) return false;
    const std::string_view source(context + offset, static_cast<std::size_t>(length));
    std::string reference;
    for (const char c : source.substr(0, 16))
        if (c) reference += c; // UTF-16 has zeros between the letters
    if (!reference.starts_with('&') || reference.starts_with("&#") || source == text) return false;
    static constexpr std::string_view predefined[] = {"&lt;", "&gt;", "&amp;", "&quot;", "&apos;"};
    return std::ranges::find(predefined, reference) == std::end(predefined);
}

struct parser_free {
    void operator()(XML_ParserStruct* parser) const noexcept { XML_ParserFree(parser); }
};

} // namespace

/// What one run of `load_xml` needs: expat calls into it with C linkage, so that no exception may leave it.
struct VLXMLParser::run_state {
    VLXMLParser& owner;
    XML_Parser parser;
    std::exception_ptr thrown = nullptr;
    bool stopped = false; ///< expat may still deliver the other half of an empty element
    bool declaresEntities = false;
    std::size_t expanded = 0; ///< bytes of text from declared entities
    int depth = 0;            ///< of open elements

    template <class Call>
    void guarded(Call&& call) noexcept
    {
        if (stopped) return;
        try {
            call();
            if (!owner.errorText.empty()) owner.errorText += position();
        } catch (...) {
            thrown = std::current_exception();
        }
        stopped = thrown || !owner.errorText.empty();
        if (stopped) XML_StopParser(parser, XML_FALSE);
    }

    std::string position() const
    {
        return base::formatted(" in line %lu, column %lu", XML_GetCurrentLineNumber(parser),
                               XML_GetCurrentColumnNumber(parser) + 1);
    }

    void takeText(std::string_view content)
    {
        if (declaresEntities && comes_from_entity(parser, content)) {
            expanded += content.size();
            if (expanded > maxExpandedText) return owner.fail("the entities expand to more than 1 MiB");
        }
        owner.OnXMLCharacterData(content.data(), static_cast<int>(content.size()));
    }

    void open(const XML_Char* name, const XML_Char** attributes)
    {
        if (++depth > maxDepth) return owner.fail(base::formatted("elements are nested more than %d deep", maxDepth));
        owner.OnXMLStartElement(name, attributes);
    }

    static run_state& of(void* user) { return *static_cast<run_state*>(user); }
    static void start(void* user, const XML_Char* name, const XML_Char** attributes)
    {
        of(user).guarded([&] { of(user).open(name, attributes); });
    }
    static void end(void* user, const XML_Char* name)
    {
        --of(user).depth;
        of(user).guarded([&] { of(user).owner.OnXMLEndElement(name); });
    }
    static void text(void* user, const XML_Char* content, int length)
    {
        of(user).guarded([&] { of(user).takeText({content, static_cast<std::size_t>(length)}); });
    }
    static void entity(void* user, const XML_Char*, int, const XML_Char* value, int, const XML_Char*, const XML_Char*,
                       const XML_Char*, const XML_Char*)
    {
        if (value) of(user).declaresEntities = true;
    }
    static void unparsed(void* user, const XML_Char* name, const XML_Char* base, const XML_Char* systemId,
                         const XML_Char* publicId, const XML_Char* notation)
    {
        of(user).guarded([&] { of(user).owner.OnXMLUnparsedEntity(name, base, systemId, publicId, notation); });
    }
};

VLXMLParser::VLXMLParser() = default;
VLXMLParser::~VLXMLParser() = default;

bool VLXMLParser::load_xml(std::istream& in)
{
    const std::unique_ptr<XML_ParserStruct, parser_free> expat(XML_ParserCreate(nullptr));
    if (!expat) throw std::bad_alloc();
    run_state run{*this, expat.get()};
    XML_SetUserData(run.parser, &run);
    XML_SetElementHandler(run.parser, run_state::start, run_state::end);
    XML_SetCharacterDataHandler(run.parser, run_state::text);
    XML_SetEntityDeclHandler(run.parser, run_state::entity);
    XML_SetUnparsedEntityDeclHandler(run.parser, run_state::unparsed);
    XML_SetParamEntityParsing(run.parser, XML_PARAM_ENTITY_PARSING_NEVER); // nothing external is fetched
    XML_SetBillionLaughsAttackProtectionActivationThreshold(run.parser, freeExpansion);
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(run.parser, maxAmplification);

    startHandlers.clear();
    endHandlers.clear();
    buffers.clear();
    errorText.clear();
    init();
    if (errorText.empty()) feed(in, run);
    if (run.thrown) std::rethrow_exception(run.thrown);
    return errorText.empty();
}

void VLXMLParser::feed(std::istream& in, run_state& run)
{
    std::streamsize fed = 0;
    for (bool isLast = false; !isLast;) {
        const int blockBytes = static_cast<int>(std::clamp<std::streamsize>(fed, smallestBlock, largestBlock));
        void* block = XML_GetBuffer(run.parser, blockBytes);
        if (!block) throw std::bad_alloc();
        const bool isReadable = in.good();
        in.read(static_cast<char*>(block), blockBytes);
        if (!isReadable || in.bad()) {
            errorText = "the XML text cannot be read";
            return;
        }
        isLast = !in;
        fed += in.gcount();
        if (XML_ParseBuffer(run.parser, static_cast<int>(in.gcount()), isLast) == XML_STATUS_OK) continue;
        if (!run.stopped) errorText = XML_ErrorString(XML_GetErrorCode(run.parser)) + run.position();
        return;
    }
}

void VLXMLParser::OnXMLStartElement(const char* element, const char** found)
{
    const auto handler = startHandlers.find(element);
    if (handler == startHandlers.end()) return;
    attributes named;
    for (; *found; found += 2) named.emplace(found[0], found[1]);
    handler->second(element, named);
}

void VLXMLParser::OnXMLEndElement(const char* element)
{
    const auto handler = endHandlers.find(element);
    if (handler != endHandlers.end()) handler->second(element);
}

void VLXMLParser::OnXMLCharacterData(const char* text, int length)
{
    if (!buffers.empty()) buffers.back().append(text, static_cast<std::size_t>(length));
}

void VLXMLParser::OnXMLUnparsedEntity(const char*, const char*, const char*, const char*, const char*) {}

void VLXMLParser::push_text_buf() { buffers.emplace_back(); }

char* VLXMLParser::pop_text_buf(unsigned* length)
{
    if (buffers.empty()) {
        if (length) *length = 0;
        return nullptr;
    }
    popped = std::move(buffers.back());
    buffers.pop_back();
    if (length) *length = static_cast<unsigned>(popped.size());
    return popped.data();
}

void VLXMLParser::fail(const std::string& reason)
{
    if (errorText.empty()) errorText = reason.empty() ? "refused" : reason;
}
