#include "formats/shared/format_notes.h"

#include <algorithm>

namespace vldv::formats {

namespace {

// In the order of the registry. type, title, told, reads, leaves. Texts are Markdown without "|".
constexpr format_note notes[] = {
    {FILE_SPMX, "Velmira", "zip archive whose first entry is `main.xml`",
     "everything: streams of any number type with their axes, names and texts", ""},
    {FILE_NANOSCOPE, "NanoScope",
     "`\\*File list`, `\\*Force file list`, `\\*EC File list` or `?*File list` in the first line, `Data_File_Type 7` "
     "for "
     "version 2",
     "versions 2 to 10, 16 and 32 bits or decimal text: images with trace and retrace together, force curves with the "
     "ramp or the height sensor, force volumes, rows of deep trench scans",
     "files whose line ends a text transfer changed; force curves as text"},
    {FILE_HDF, "PSI HDF4", "`0E 03 13 01` and a header of tag 0x8009", "the image with its offsets",
     "spectroscopy (tag 0x800A), packed data, HDF5 and HDF4 of other fields"},
    {FILE_JPK, "JPK", "TIFF with the tag 0x8042, or zip archive with `header.properties`",
     "images with all calibrations; force curves, maps, QI data and series: every segment of every channel with all "
     "its "
     "calibrations",
     "the HDF5 kind"},
    {FILE_TMD, "TrueMap", "`Binary TrueMap Data File v2.0`", "the surface, in micrometres",
     "version 1; the files of Scan 8, whose layout is not public"},
    {FILE_SM2, "RHK SPM32", "`STiMage 3.1`", "pages of images, with left and right together, and pages of curves",
     "the files of Smena, whose layout is not public; later RHK versions"},
    {FILE_STP, "Molecular Imaging", "`UK SOFT`", "all buffers, both directions of a channel together",
     "headers without their data"},
    {FILE_TLK, "TLK", "nothing but the extension", "nothing: the layout is not public", ""},
    {FILE_WSXM, "WSxM", "`WSxM file copyright ` in the first line",
     "images of 16-bit, float and double numbers, curves of all kinds, text matrices and lists of points",
     "movies, lithography, force volumes, the binary headers of version 1"},
    {FILE_MDT, "NT-MDT", "`01 B0 93 FF`",
     "scans with both directions together, curves and curves at points in the old and the new manner, described "
     "arrays: "
     "images, curves, pairs, spectra at points",
     "old described arrays (type 105); texts and palettes"},
    {FILE_IMG, "IMG",
     "the number 2.1 (Burleigh), `RSCOPE` (DME), the number 50 (IonScope), `Scan Size: ` (ECS), and sizes that fit the "
     "file",
     "the image of a Burleigh, DME Rasterscope, IonScope or ECS file", "any other program's .img"},
    {FILE_BCR, "BCR", "`fileformat = bcrstm` or `bcrf`, as ASCII or `_unicode`",
     "images of 16-bit or float numbers in either byte order, with offsets", "force curves"},
    {FILE_IBW, "Igor binary wave", "a version of 1, 2, 3 or 5 and the header's checksum",
     "waves of any number type as curves, images and layers; with a microscope's notes: channels with their units, "
     "traces and retraces together, force curves by segment over the sensor",
     "texts, waves that depend on a formula, the newer map container"},
    {FILE_WIP, "WITec project", "`WIT_PRCT`, `WIT_PR06`, `WIT_DATA` or `WIT_DA06`",
     "images, spectra and spectral maps with linear, grating, polynomial and table axes",
     "bitmaps and texts; files older than version 0 (`WIT^`)"},
    {FILE_SCALA, "Omicron SCALA",
     "`Omicron SPM Control.` among the first comments of the .par; `n_curves` and `BEGIN COORD` of curves at points",
     "the set of a .par and its data files, opened by any of them: topography in both directions, spectroscopy at "
     "points and on grids",
     ""},
    {FILE_NANOSURF, "Nanosurf", "`[DataSet]` in the first line",
     "images with all frames, curves with the axes of their lines, force maps as volumes, sweeps", "HDF5 (.nhf)"},
    {FILE_PNI, "Pacific Nanotechnology", "version `1.0` or `2.0` at byte 4 and the size of the file",
     "the image of each file of a set (`z(hgt)`, `z(l_r)`, …)", "comment and date, whose place is not known"},
    {FILE_SUR, "Digital Surf", "`DIGITAL SURF` or `DSCOMPRESSED`",
     "surfaces, profiles, series, layers, colours, spectra and spectral maps of 16 or 32 bits, packed or not; sets of "
     "files",
     "newer documents (.mnt)"},
    {FILE_AIST, "AIST-NT", "a tree that can be read, after all others", "rasters with their masks, curves",
     "settings, whose layout is not known"},
    {FILE_OPD, "Wyko", "`01 00` and `Directory`, or `Wyko ASCII Data File Format`",
     "heights and intensities of the binary file or of its text export", "the later .opdx"},
    {FILE_BMP, "Bitmap", "`BM`", "1, 4, 8, 16, 24 and 32 bits, plain, run-length coded or with bit fields",
     "JPEG and PNG inside a bitmap"},
    {FILE_JPEG, "JPEG", "`FF D8 FF`", "grey and colour pictures, baseline or progressive", ""},
    {FILE_PNG, "PNG", "`89 50 4E 47 0D 0A 1A 0A`",
     "grey and colour pictures of all depths, interlaced or not; grey levels of 16 bits are heights",
     "transparency; all but the first picture of an animation"},
    {FILE_PSIA, "PSIA / Park TIFF", "TIFF with the number 0x0E031301 in tag 50432",
     "the heights in the private tags, with their axes and settings",
     "line profiles, spectroscopy, compressed, logarithmic and square-root samples; the picture of the page"},
    {FILE_TIFF, "TIFF", "`II*` or `MM*`", "all pages: pictures of 8 bits, heights of 16 and 32 bits and floats", ""},
    {FILE_TEXT, "Text table", "numbers behind a header of lines that are none, after all others, or a known header",
     "matrices, lists of points on a grid, curves of one or more columns; UTF-8, UTF-16 and Latin-1, decimal points "
     "and commas (\"1,234\" between semicolons is 1.234 unless the file shows otherwise; \"1.234,5\" is 1234.5), units "
     "from headings and from the headers of several programs; a row of an image that lost its numbers keeps its place, "
     "not measured",
     "points that lie on no grid, ragged matrices, tables with a number that is damaged"},
};

} // namespace

const format_note& note_of(SupportedFileTypes type) noexcept
{
    static constexpr format_note unknown{FILE_UNKNOWN, "unknown", "", "", ""};
    const auto found = std::ranges::find(notes, type, &format_note::type);
    return found == std::end(notes) ? unknown : *found;
}

} // namespace vldv::formats
