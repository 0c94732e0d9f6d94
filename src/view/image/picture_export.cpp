#include "view/image/picture_export.h"

#include "output/picture_writer.h"
#include "platform/app/WinApp.h"
#include "platform/files/Exceptions.h"
#include "view/DCView.h"

#include <algorithm>
#include <memory>
#include <string_view>

int CountExportFormats(const wchar_t* filters) noexcept
{
    const std::wstring_view text = filters ? std::wstring_view(filters) : std::wstring_view();
    return static_cast<int>(std::ranges::count(text, L'|') / 2);
}

namespace vldv::view {

namespace {

/// Shared by all views, made when they are first asked for.
struct export_options {
    SPMVar decorations, quality, method, copyright, artist;
    SPMVar* const bitmap[1] = {&decorations};
    SPMVar* const jpeg[2] = {&decorations, &quality};
    SPMVar* const tiff[4] = {&decorations, &method, &copyright, &artist};

    export_options()
    {
        decorations.Init("expDec(Export with decorations),boolean");
        quality.Init("jpgQality(JPEG Quality),int,1,100");
        quality = 50;
        method.Init("tiffMethod(TIFF Method),enum,Uncompressed");
        copyright.Init("tiffCopyright(Copyright),string");
        copyright.set_string("Copyright. All rights reserved.");
        artist.Init("tiffArtist(Artist),string");
    }
};

export_options& options()
{
    static export_options shared;
    return shared;
}

/// The rows of a bitmap in memory, from the top.
output::pixel_view rows_of(const VLDIBImage& image)
{
    if (!image.Ok()) return {};
    const auto stride = static_cast<std::ptrdiff_t>(image.stride());
    return {image.bits().data() + stride * (image.height() - 1), image.width(), image.height(), -stride,
            image.header().biBitCount / 8};
}

/// Data and legend on white, as large as the client area.
bool compose(CDCView& view, VLDIBImage& picture)
{
    constexpr colorEntry white = 0xFFFFFF;
    const CRect client = view.GetClientRect();
    const std::unique_ptr<CDC> reference = view.getPeer() ? view.getPeer()->clientDC() : nullptr;
    picture.Init(reference.get());
    if (!picture.Create(client.Width(), client.Height(), false) || !picture.dc()) return false;
    picture.dc()->FillSolidRect(client, white);
    view.DrawView(picture.dc());
    return true;
}

struct picture_kind {
    output::picture_format format;
    const char* failure;
};

picture_kind kind_of(int filter)
{
    if (filter == jpegFilter) return {output::picture_format::jpeg, "Can't convert image to JPEG format."};
    if (filter == tiffFilter) return {output::picture_format::tiff, "Can't convert image to TIFF format."};
    return {output::picture_format::bmp, "Can't convert image to 24-bpp format."};
}

bool tell(const std::string& reason)
{
    if (CWinApp* const app = AfxGetApp()) app->host().messageBox(reason, message_icon::warning);
    return false;
}

} // namespace

std::span<SPMVar* const> picture_parameters(int format)
{
    export_options& all = options();
    if (format == bitmapFilter - 1) return all.bitmap;
    if (format == jpegFilter - 1) return all.jpeg;
    if (format == tiffFilter - 1) return all.tiff;
    return {};
}

bool export_picture(CDCView& view, int filter, const std::filesystem::path& path)
{
    view.flushTimers(); // what waits to be rendered belongs to the picture
    VLDIBImage composed;
    const bool isComposed = static_cast<bool>(options().decorations);
    if (isComposed && !compose(view, composed)) return tell("Can't convert image to 24-bpp format.");
    const picture_kind kind = kind_of(filter);
    const auto bytes = output::encode_picture(kind.format, rows_of(isComposed ? composed : view.image),
                                              {.jpegQuality = static_cast<int>(options().quality)});
    if (!bytes) return tell(kind.failure);
    try {
        output::save_file_atomically(path, *bytes);
    } catch (const CException& failure) {
        return tell(failure.what());
    }
    return true;
}

} // namespace vldv::view
