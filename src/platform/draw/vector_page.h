#pragma once
#include "platform/draw/geometry.h"

#include <cstddef>
#include <string>
#include <vector>

class CDC;

namespace vldv {

/// A page that keeps what is drawn on it as lines, shapes and text, and becomes a document in memory.
class IVectorPage {
public:
    virtual ~IVectorPage() = default;
    virtual CDC& dc() = 0;
    /// Ends the page; nothing is drawn behind that. \return the document, empty when it could not be made
    virtual std::vector<std::byte> finish() = 0;
};

namespace platform {

enum class vector_format { pdf, svg };

/// What a page is made as. A pixel is the 96th part of an inch, as in a picture.
struct vector_page_form {
    vector_format format = vector_format::svg;
    CSize pixels;
    std::wstring title;
};

/// What a shared object with a drawing surface gives to a program that has no windows: a page, which the caller
/// destroys. On the thread that draws.
using make_vector_page = IVectorPage* (*)(const vector_page_form& form);

/// The name that the shared object exports it by.
constexpr const char* vectorPageSymbol = "vldv_make_vector_page";

} // namespace platform

} // namespace vldv
