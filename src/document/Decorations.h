#pragma once
#include "document/plugin_decoration.h"
#include "vldv_api.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// What kind of image a group of decorations belongs to. Kept for those who set it, never looked at.
enum DecImageType : std::uint32_t {
    DEC_IMAGE_ANY = 0,
    DEC_IMAGE_CURVE = 1,
    DEC_IMAGE_SURFACE = 2,
    DEC_IMAGE_VOLUME = 3,
};

/// What is done to the decorations of a name.
enum ObjectActionType : std::uint32_t {
    OBJECT_CLEAR_STATE = 0,
    OBJECT_SELECT = 1,
    OBJECT_DESELECT = 2,
    OBJECT_DELETE = 3,
};

namespace vldv {

/// Bits of a decoration's state word.
enum decoration_state : std::uint32_t {
    DECORATION_SELECTED = 1,
    DECORATION_HIT_TESTABLE = 4,
};

} // namespace vldv

namespace vldv::document {

/// One drawing as it is kept.
struct decoration {
    struct element {
        std::uint32_t width = 0, height = 0, depth = 0; ///< of a block: its size in `width`
        std::uint32_t mode = 0;
        std::vector<unsigned char> bytes;
    };
    std::uint32_t type = DECORATION_END;
    unsigned tupleLength = 0;        ///< numbers of one coordinate: 1, 2 or 3; 0: the type keeps no data
    std::vector<double> coordinates; ///< whole tuples; two a bitmap or volume, an x and a y a block
    std::vector<element> elements;
    std::string name, text;
    std::uint32_t color = 0; ///< 0xBBGGRR
    std::uint32_t state = 0; ///< `decoration_state`
};

/// The drawings of one image, in named groups. A value; knows no document.
class VLDV_API decorations {
public:
    struct group {
        std::deque<decoration> members;
        DecImageType imageType = DEC_IMAGE_ANY;
    };

    /// Replaces the group by copies of the records; records of type 0 or without data are passed over. The group may
    /// be empty then. A count of 0 removes it. On an exception the group stays as it was.
    void set(std::string_view key, const VLPluginDecoration* list, unsigned count, DecImageType type);
    /// A copy closed by a record of type 0, to be released by `freeCopy`. Names, texts and the bytes of elements point
    /// into the group and die with it. Black, green and blue come back as colour indices, all others as custom colours.
    /// \return null, and a count of 0, for an absent or empty group
    VLPluginDecoration* copy(std::string_view key, unsigned* count, DecImageType* type) const;
    static void freeCopy(VLPluginDecoration* copy) noexcept;

    /// State word of the first decoration of this name; 0 when there is none or the name is empty.
    std::uint32_t flags(std::string_view name) const noexcept;
    /// \return whether a decoration of that name changed
    bool apply(ObjectActionType action, std::string_view name);
    /// Flips the selected bit. \param place, member  of the group in the order of the keys, and in it \return it is
    /// there
    bool toggle(std::size_t place, std::size_t member) noexcept;
    void clear() noexcept { groups.clear(); }
    /// Changes the bytes of the first bitmap of a group. \return there is one
    bool editBitmap(std::string_view key, const std::function<void(decoration::element&)>& edit);
    /// Puts a whole group in place, as it is. \return false, with nothing changed, for one that `set` could not have
    /// made
    bool put(std::string key, group made);

    const std::map<std::string, group, std::less<>>& all() const noexcept { return groups; }

private:
    std::map<std::string, group, std::less<>> groups;
};

} // namespace vldv::document
