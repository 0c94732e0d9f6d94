// Tells how many images a recording holds, as a program that knows the installed headers alone.
#include "base/text.h"
#include "document/StorageDoc.h"
#include "plugins/PluginRequest.h"
#include "primitives/numeric.h"
#include "view/Scale.h"
#include "vldv.h"

#include <iostream>

int main(int count, char** arguments)
{
    if (count != 2) return 2;
    wchar_t* const path = char2wchar(arguments[1]);
    CStorageDoc document;
    const bool opened = document.OnOpenDocument(path);
    vlutl_free(path);
    std::cout << document.getImagesNumber() << '\n';
    return opened ? 0 : 1;
}
