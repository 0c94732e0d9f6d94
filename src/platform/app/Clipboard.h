#pragma once
#include "platform/draw/DC.h"
#include "vldv_api.h"

#include <optional>
#include <string>

namespace vldv {

/// The clipboard of the window system: opened, changed, closed.
class VLDV_API IClipboard {
public:
    virtual ~IClipboard() = default;
    /// \return false while another program holds it
    virtual bool open() = 0;
    virtual void close() = 0;
    virtual void empty() = 0;
    virtual std::optional<std::wstring> text() const = 0;
    virtual bool setText(const std::wstring& text) = 0;
    /// Copies the pixels. \return false when it cannot be taken
    virtual bool setBitmap(const CBitmap& bitmap) = 0;
};

/// Opens the clipboard of the application for its lifetime.
class VLDV_API open_clipboard {
public:
    open_clipboard();
    open_clipboard(const open_clipboard&) = delete;
    open_clipboard& operator=(const open_clipboard&) = delete;
    ~open_clipboard();

    /// Null when there is none or it is busy.
    explicit operator bool() const noexcept { return clipboard != nullptr; }
    IClipboard* operator->() const noexcept { return clipboard; }

private:
    IClipboard* clipboard = nullptr;
};

} // namespace vldv
