// picturetwins OPTION... -- NAME...   returns 1 and prints the picture if two of the names would write the
// same picture with QSA2QSB_FRAMES. Converts nothing.

#include "tools/pictures/PictureTwins.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto divider = std::find(arguments.begin(), arguments.end(), "--");
    if (divider == arguments.end())
        return 2;
    const auto twins =
        FindPictureTwins({arguments.begin(), divider}, {std::next(divider), arguments.end()});
    if (!twins)
        return 0;
    std::printf("%s and %s give %s\n", twins->first.c_str(), twins->second.c_str(),
                twins->picture.c_str());
    return 1;
}
