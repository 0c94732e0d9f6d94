#pragma once
#include <string>
#include <tiffio.h>

namespace vldv::formats {

/// What is called of libtiff. It is loaded with the first TIFF file: with the codecs behind it, it is eight libraries,
/// which cost every start of a program a millisecond.
struct tiff_library {
    decltype(&::TIFFOpenOptionsAlloc) allocOptions;
    decltype(&::TIFFOpenOptionsFree) freeOptions;
    decltype(&::TIFFOpenOptionsSetMaxSingleMemAlloc) setMostMemory;
    decltype(&::TIFFOpenOptionsSetErrorHandlerExtR) setErrorHandler;
    decltype(&::TIFFOpenOptionsSetWarningHandlerExtR) setWarningHandler;
    decltype(&::TIFFClientOpenExt) open;
    decltype(&::TIFFClose) close;

    decltype(&::TIFFIsBigTIFF) isBigTiff;
    decltype(&::TIFFIsBigEndian) isBigEndian;
    decltype(&::TIFFCurrentDirOffset) currentDirectoryOffset;
    decltype(&::TIFFNumberOfDirectories) numberOfDirectories;
    decltype(&::TIFFLastDirectory) isLastDirectory;
    decltype(&::TIFFReadDirectory) readDirectory;
    decltype(&::TIFFGetField) getField;
    decltype(&::TIFFGetFieldDefaulted) getFieldDefaulted;

    decltype(&::TIFFIsTiled) isTiled;
    decltype(&::TIFFScanlineSize64) scanlineSize;
    decltype(&::TIFFTileSize64) tileSize;
    decltype(&::TIFFTileRowSize64) tileRowSize;
    decltype(&::TIFFComputeStrip) computeStrip;
    decltype(&::TIFFComputeTile) computeTile;
    decltype(&::TIFFReadEncodedStrip) readEncodedStrip;
    decltype(&::TIFFReadEncodedTile) readEncodedTile;
    decltype(&::TIFFRGBAImageOK) isRgbaReadable;
    decltype(&::TIFFReadRGBAImageOriented) readRgbaOriented;

    std::string failure{}; ///< why nothing may be called; empty when it is loaded
};

/// On any thread.
const tiff_library& libtiff();

} // namespace vldv::formats
