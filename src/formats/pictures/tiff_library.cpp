#include "formats/pictures/tiff_library.h"

#include <dlfcn.h>

namespace vldv::formats {

namespace {

/// Takes functions out of the library until one is missing.
class function_loader {
public:
    function_loader() : handle(dlopen(VLDV_LIBTIFF, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE)) { note(handle); }
    template <class Function>
    void take(Function*& function, const char* name)
    {
        void* const found = handle ? dlsym(handle, name) : nullptr;
        note(found);
        function = reinterpret_cast<Function*>(found);
    }
    const std::string& failure() const noexcept { return reason; }

private:
    void note(const void* found)
    {
        if (found || !reason.empty()) return;
        const char* const told = dlerror();
        reason = told ? told : "libtiff cannot be loaded";
    }

    void* handle;
    std::string reason;
};

tiff_library loaded()
{
    function_loader from;
    tiff_library made;
    from.take(made.allocOptions, "TIFFOpenOptionsAlloc");
    from.take(made.freeOptions, "TIFFOpenOptionsFree");
    from.take(made.setMostMemory, "TIFFOpenOptionsSetMaxSingleMemAlloc");
    from.take(made.setErrorHandler, "TIFFOpenOptionsSetErrorHandlerExtR");
    from.take(made.setWarningHandler, "TIFFOpenOptionsSetWarningHandlerExtR");
    from.take(made.open, "TIFFClientOpenExt");
    from.take(made.close, "TIFFClose");
    from.take(made.isBigTiff, "TIFFIsBigTIFF");
    from.take(made.isBigEndian, "TIFFIsBigEndian");
    from.take(made.currentDirectoryOffset, "TIFFCurrentDirOffset");
    from.take(made.numberOfDirectories, "TIFFNumberOfDirectories");
    from.take(made.isLastDirectory, "TIFFLastDirectory");
    from.take(made.readDirectory, "TIFFReadDirectory");
    from.take(made.getField, "TIFFGetField");
    from.take(made.getFieldDefaulted, "TIFFGetFieldDefaulted");
    from.take(made.isTiled, "TIFFIsTiled");
    from.take(made.scanlineSize, "TIFFScanlineSize64");
    from.take(made.tileSize, "TIFFTileSize64");
    from.take(made.tileRowSize, "TIFFTileRowSize64");
    from.take(made.computeStrip, "TIFFComputeStrip");
    from.take(made.computeTile, "TIFFComputeTile");
    from.take(made.readEncodedStrip, "TIFFReadEncodedStrip");
    from.take(made.readEncodedTile, "TIFFReadEncodedTile");
    from.take(made.isRgbaReadable, "TIFFRGBAImageOK");
    from.take(made.readRgbaOriented, "TIFFReadRGBAImageOriented");
    made.failure = from.failure();
    return made;
}

} // namespace

const tiff_library& libtiff()
{
    static const tiff_library once = loaded();
    return once;
}

} // namespace vldv::formats
