#pragma once

/// Numbers of the texts in the string table that other folders ask for by name.
namespace vldv::texts {

enum id : unsigned {
    position = 1001,
    size = 1002,
    distance = 1003,
    distanceAngle = 1004,
    armsAngle = 1005,
    length = 1006,
    line = 1007,
    sizes = 1008,
    file = 1009,
    image = 1010,
    totalMarks = 1012,
    lengthyObject = 1017,
    differenceX = 1019,
    differenceY = 1020,
    delimiters = 1024,
    openFilter = 1025,
    undoLost = 1028,
    cannotExport = 1038,
    fileIsEmpty = 1040,
    copyOf = 1049,
    decorationsNotSaved = 1055,
    decorationsNotLoaded = 1056,
    redoLost = 1059,
    placeY = 1066,
    placeX = 1067,
    measureHeading = 1070,
    tooManyFiles = 1076,
    statisticsHeading = 1084,
    x = 1085,
    y = 1086,
    selectX = 4011,
    exportFilters = 4026,
    textFilter = 4029,
    overlayTab = 4036,
    cannotCreate = 61700,
};

} // namespace vldv::texts
