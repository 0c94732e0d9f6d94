#pragma once
#include "vldv_api.h"

#include <functional>
#include <istream>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// XML in, calls out. Derived parsers bind element names to member functions in `init()`:
///
///     void init() override
///     {
///         add_start_handler("var", &my_parser::xmlh_var);
///         add_end_handler("var", &my_parser::xmlh_var_end);
///     }
///
/// Texts reach handlers in UTF-8. Nothing external is fetched. Entities that a document declares may expand to 1 MiB of
/// text (in attributes to 3 MiB, or to the document's own size); "&lt;" and its like cost nothing. Elements may be
/// nested 1,000 deep.
class VLDV_API VLXMLParser {
public:
    using attributes = std::map<std::string, const char*>;

    VLXMLParser();
    VLXMLParser(const VLXMLParser&) = delete;
    VLXMLParser& operator=(const VLXMLParser&) = delete;
    virtual ~VLXMLParser();

    /// Parses to the end of the stream. What a handler throws leaves from here.
    /// \return false when it is not well-formed XML or cannot be read
    bool load_xml(std::istream& in);
    /// After a failure: what was wrong, with line and column.
    const std::string& get_error() const noexcept { return errorText; }

    virtual void init() {}
    virtual void OnXMLStartElement(const char* element, const char** attributes);
    virtual void OnXMLEndElement(const char* element);
    virtual void OnXMLCharacterData(const char* text, int length);
    virtual void OnXMLUnparsedEntity(const char* entity, const char* base, const char* systemId, const char* publicId,
                                     const char* notation);

protected:
    template <class Parser>
    void add_start_handler(const char* element, void (Parser::*handler)(const char*, const attributes&))
    {
        startHandlers[element] = [this, handler](const char* name, const attributes& found) {
            (static_cast<Parser*>(this)->*handler)(name, found);
        };
    }
    template <class Parser>
    void add_end_handler(const char* element, void (Parser::*handler)(const char*))
    {
        endHandlers[element] = [this, handler](const char* name) { (static_cast<Parser*>(this)->*handler)(name); };
    }

    /// Starts collecting character data; may be nested.
    void push_text_buf();
    /// Ends the innermost collection. \return its text, zero-terminated, valid until the next call of this operation;
    /// null when none is open. `length` may be null.
    char* pop_text_buf(unsigned* length);
    /// Ends parsing and makes `load_xml` return false; for handlers that meet something they cannot use.
    void fail(const std::string& reason);

private:
    struct run_state;
    void feed(std::istream& in, run_state& run);

    std::map<std::string, std::function<void(const char*, const attributes&)>, std::less<>> startHandlers;
    std::map<std::string, std::function<void(const char*)>, std::less<>> endHandlers;
    std::vector<std::string> buffers;
    std::string popped;
    std::string errorText;
};
