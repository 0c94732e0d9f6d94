#include "resources/open_filter.h"

#define NANOSCOPE_PATTERNS "*.0??;*.1??;*.2??;*.3??;*.4??;*.5??;*.6??;*.7??;*.8??;*.9??;*.di;*.pfc"
#define SCALA_PATTERNS "*.par;*.tf?;*.tb?;*.sf?;*.sb?"
// Tables of numbers open under any name; these are what programs call them.
#define TABLE_PATTERNS "*.txt;*.dat;*.csv;*.tsv;*.asc;*.xyz"

namespace vldv {

const char* const openFilterText =
    "All known formats|*.spm;" NANOSCOPE_PATTERNS
    ";*.hdf;*.jpk*;*.tmd;*.sm2;*.stp;*.tlk;*.to?;*.ch?;*.cur;*.adh;*.mdt;*.img;*.bcr;*.bcrf;"
    "*.ibw;*.wip;*.wid;" SCALA_PATTERNS
    ";*.nid;*.ezd;*.pni;*.sur;*.pro;*.aist;*.opd;*.bmp;*.jpg;*.jpeg;*.png;*.tif;*.tiff;" TABLE_PATTERNS "|"
    "Velmira files (*.spm)|*.spm|"
    // Escaped: two question marks and a parenthesis would be a trigraph.
    "NanoScope files (*.0?\?)|" NANOSCOPE_PATTERNS "|"
    "HDF files (*.hdf)|*.hdf|"
    "JPK Files (*.jpk*)|*.jpk*|"
    "Scan 8 files (*.tmd)|*.tmd|"
    "Smena files (*.sm2)|*.sm2|"
    "Molecular Imaging files (*.stp)|*.stp|"
    "TLK files (*.tlk)|*.tlk|"
    "WSxM files (*.top)|*.to?;*.ch?;*.cur;*.adh|"
    "NT-MDT files (*.mdt)|*.mdt|"
    "IMG files (*.img)|*.img|"
    "Umka files (*.bcr)|*.bcr;*.bcrf|"
    "IgorPro Files (*.ibw)|*.ibw|"
    "WITec files (*.wip)|*.wip;*.wid|"
    "Omicron files (*.par)|" SCALA_PATTERNS "|"
    "Nanosurf files (*.nid)|*.nid;*.ezd|"
    "Pacific Nanotech files (*.pni)|*.pni|"
    "Digital Surf files (*.sur,*.pro)|*.sur;*.pro|"
    "AIST-NT Files (*.aist)|*.aist|"
    "WYKO Files (*.opd)|*.opd|"
    "Bitmap files (*.bmp)|*.bmp|"
    "JPEG files (*.jpg)|*.jpg;*.jpeg|"
    "PNG files (*.png)|*.png|"
    "TIFF files (*.tif)|*.tif;*.tiff|"
    "Text files (*.txt, *.dat)|" TABLE_PATTERNS "|"
    "All files (*.*)|*.*||";

} // namespace vldv
