#include "formats/ibw/ibw.h"
#include "formats/img/img.h"
#include "formats/jpk/jpk.h"
#include "formats/mdt/mdt.h"
#include "formats/nanoscope/nanoscope.h"
#include "formats/nid/nid.h"
#include "formats/pictures/bmp.h"
#include "formats/pictures/jpeg.h"
#include "formats/pictures/png.h"
#include "formats/pictures/tiff.h"
#include "formats/registry.h"
#include "formats/scala/scala.h"
#include "formats/shared/file_group.h"
#include "formats/shared/finish_recording.h"
#include "formats/single/aist.h"
#include "formats/single/bcr.h"
#include "formats/single/hdf.h"
#include "formats/single/opd.h"
#include "formats/single/pni.h"
#include "formats/single/psia.h"
#include "formats/single/sm2.h"
#include "formats/single/stp.h"
#include "formats/single/tlk.h"
#include "formats/single/tmd.h"
#include "formats/single/wsxm.h"
#include "formats/sur/sur.h"
#include "formats/text/text_table.h"
#include "formats/wip/wip.h"

#include <cstring>
#include <string_view>

namespace vldv::formats {

namespace {

/// A zip archive whose first entry is "main.xml"; other instruments write zip archives, too.
bool sniff_container(std::span<const std::byte> head)
{
    constexpr std::string_view signature = "PK\3\4", entry = "main.xml";
    constexpr std::size_t nameLengthAt = 26, nameAt = 30;
    if (head.size() < nameAt + entry.size()) return false;
    return std::memcmp(head.data(), signature.data(), signature.size()) == 0 &&
           head[nameLengthAt] == std::byte{entry.size()} && head[nameLengthAt + 1] == std::byte{0} &&
           std::memcmp(head.data() + nameAt, entry.data(), entry.size()) == 0;
}

/// A reader whose recordings are finished: what the table hands out.
template <base::read_result<recording> (*Read)(source&)>
base::read_result<recording> finished(source& file)
{
    return finish_recording(Read(file));
}

// In the order of the file dialog. type, name, patterns, sniff, possible, read, underAnyName, leaders.
constexpr format_row rows[] = {
    {FILE_SPMX, "Velmira files", "*.spm", sniff_container, nullptr, nullptr},
    {FILE_NANOSCOPE, "NanoScope files", "*.0??;*.1??;*.2??;*.3??;*.4??;*.5??;*.6??;*.7??;*.8??;*.9??;*.di;*.pfc",
     sniff_nanoscope, nullptr, finished<read_nanoscope>},
    {FILE_HDF, "HDF files", "*.hdf", sniff_hdf, nullptr, finished<read_hdf>},
    {FILE_JPK, "JPK Files", "*.jpk*", sniff_jpk, possible_jpk, finished<read_jpk>, true},
    {FILE_TMD, "Scan 8 files", "*.tmd", sniff_tmd, possible_tmd, finished<read_tmd>},
    {FILE_SM2, "Smena files", "*.sm2", sniff_sm2, possible_sm2, finished<read_sm2>},
    {FILE_STP, "Molecular Imaging files", "*.stp", sniff_stp, nullptr, finished<read_stp>},
    {FILE_TLK, "TLK files", "*.tlk", nullptr, possible_tlk, finished<read_tlk>},
    {FILE_WSXM, "WSxM files", "*.to?;*.ch?;*.cur;*.adh", sniff_wsxm, nullptr, finished<read_wsxm>},
    {FILE_MDT, "NT-MDT files", "*.mdt", sniff_mdt, nullptr, finished<read_mdt>},
    {FILE_IMG, "IMG files", "*.img", sniff_img, possible_img, finished<read_img>},
    {FILE_BCR, "Umka files", "*.bcr;*.bcrf", sniff_bcr, nullptr, finished<read_bcr>},
    {FILE_IBW, "IgorPro Files", "*.ibw", sniff_ibw, possible_ibw, finished<read_ibw>},
    {FILE_WIP, "WITec files", "*.wip;*.wid", sniff_wip, nullptr, finished<read_wip>},
    {FILE_SCALA, "Omicron files", "*.par;*.tf?;*.tb?;*.sf?;*.sb?", sniff_scala, possible_scala, finished<read_scala>,
     false, scala_leaders},
    {FILE_NANOSURF, "Nanosurf files", "*.nid;*.ezd", sniff_nid, nullptr, finished<read_nid>},
    {FILE_PNI, "Pacific Nanotech files", "*.pni", sniff_pni, possible_pni, finished<read_pni_group>, false,
     group_leaders},
    {FILE_SUR, "Digital Surf files", "*.sur;*.pro", sniff_sur, nullptr, finished<read_sur_group>, false, group_leaders},
    {FILE_AIST, "AIST-NT Files", "*.aist", nullptr, possible_aist, finished<read_aist>, true},
    {FILE_OPD, "WYKO Files", "*.opd", sniff_opd, possible_opd, finished<read_opd>},
    {FILE_BMP, "Bitmap files", "*.bmp", sniff_bmp, nullptr, finished<read_bmp>},
    {FILE_JPEG, "JPEG files", "*.jpg;*.jpeg", sniff_jpeg, nullptr, finished<read_jpeg>},
    {FILE_PNG, "PNG files", "*.png", sniff_png, nullptr, finished<read_png>},
    {FILE_PSIA, "TIFF files", "*.tif;*.tiff", sniff_psia, nullptr, finished<read_psia>},
    {FILE_TIFF, "TIFF files", "*.tif;*.tiff", sniff_tiff, nullptr, finished<read_tiff>},
    {FILE_TEXT, "Text files", "*.txt;*.dat", sniff_text_table, possible_text_table, finished<read_text_table>, true},
};

} // namespace

std::span<const format_row> format_table() noexcept { return rows; }

} // namespace vldv::formats
