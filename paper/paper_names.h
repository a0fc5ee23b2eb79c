// The device's paper names and the print media size keywords they stand for.
//
// The device reports the paper loaded in each drawer by name ("A4", "Letter", "SRA3"),
// and the original-size list of the basic tab uses the same names; the print media size
// list and the page-size table use keywords ("ePTKWPageMediaSize_ISOA4"). One table
// serves both the drawer paper and the zoom computation.
#pragma once

#include <string_view>

namespace spindle::paper {

// The keyword of a device paper name, by exact, case-sensitive comparison, first match
// wins; "ePTKWPageMediaSize_ISOA4" for a name the table does not know.
std::string_view PaperNameToMediaSizeKeyword(std::string_view paperName);

}  // namespace spindle::paper
