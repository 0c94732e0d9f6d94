#pragma once
#include "base/SPMDataStream.h"
#include "formats/registry.h"
#include "platform/draw/bitmap.h"
#include "vldv_api.h"

#include <functional>
#include <istream>
#include <string>
#include <vector>

/// What a file is read into: the image interface of a document, and the reader that fills it.
class VLDV_API VLFileReader {
public:
    virtual ~VLFileReader();
    virtual unsigned getImagesNumber() const = 0;
    virtual const SPMDataStream& getImage(unsigned image) const = 0;
    virtual SPMDataStream& getImage(unsigned image) = 0;
    virtual unsigned getSubImagesNumber(unsigned image) const = 0;
    virtual unsigned getSubImageLength(unsigned image) const = 0;
    /// Recognises the file by its content, then by its name, and reads the whole of it. Where neither is certain, what
    /// one format refuses is tried as the next.
    /// \return false when it cannot be used; `getReadError()` then tells why
    virtual bool ReadFile(std::istream& in);
    /// Reads a file whose type `fileType` names already.
    virtual bool doReadFile(std::istream& in);
    virtual void AddNewImages(const SPMDataStream* streams, unsigned count) = 0;
    virtual void revalidateImage(unsigned image) = 0;
    virtual bool SetDIB(const BITMAPINFOHEADER* header, const void* bits, const RGBQUAD* palette, int index) = 0;
    virtual void RemoveImage(unsigned image) = 0;
    virtual const char* getString(const char* key, unsigned image) const = 0;
    virtual void setString(const char* key, const char* value, unsigned image) = 0;

    SupportedFileTypes fileType = FILE_UNKNOWN; ///< of the file read last
    /// Told now and then how much of a file is read, 0 to 1; false gives up. May stay empty.
    std::function<bool(double)> onReadProgress;

    /// What the first bytes of a stream say, without regard to any name. The position is kept.
    static SupportedFileTypes GetDocumentType(std::istream& in);
    /// Why the last `ReadFile` answered false, in words.
    const std::string& getReadError() const noexcept { return readError; }
    /// What a user has to know of what the last `ReadFile` gave: what was left out or is not as the file meant it.
    const std::vector<std::string>& getReadWarnings() const noexcept { return readWarnings; }
    /// True when the last `ReadFile` gave up because `onReadProgress` said so.
    bool isReadCancelled() const noexcept { return readCancelled; }

    /// Appends all that a recording holds; its samples are moved out of it. \return as for `ReadFile`
    bool addRecording(vldv::formats::recording& recording);
    /// Adds an image without a copy of its samples; `stream` is left without any.
    void moveIn(SPMDataStream& stream);
    /// Gives a stream that is to be added an id that no image has yet, by a number at its end.
    void makeIdUnique(SPMDataStream& stream) const;

protected:
    /// Where the stream comes from, absolute; formats of several files find the others beside it. May be empty.
    std::wstring sourcePath;
    /// Overrides the file name as title; set by formats that know a better one.
    virtual void setDisplayTitle(const std::string&) {}

    std::string readError;
    std::vector<std::string> readWarnings;
    bool isOfSeveralFiles = false; ///< files beside the last one that was read were needed as well
    bool isDamaged = false;        ///< images of the container that was read last were left out

private:
    bool tellProgress(double done);
    bool tryFormats(std::istream& in, const std::vector<const vldv::formats::format_row*>& rows);
    bool readCancelled = false;
    bool readNative(std::istream& in);
    void warnOfVoids();
    bool readForeign(std::istream& in, const vldv::formats::format_row& format);
    void setForeignText(const std::string& key, const std::string& text, unsigned image);
};
