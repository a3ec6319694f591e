#ifndef KTX_VORTIME_PICTUREMARK_H
#define KTX_VORTIME_PICTUREMARK_H

#include <string>

#include "output/FileMark.h"

namespace KTX::VORTIME {

enum PictureFormatE { PICTURE_PNG, PICTURE_SVG };

/// What tells a picture of the tool from others: a text chunk "Software" in a PNG file, a comment
/// in an SVG file, at the end of either.
FileMarkC const& pictureMark(PictureFormatE format);

/// Adds the mark to a picture. False for a file that is none, and when it cannot be written.
bool markPicture(std::string const& name, PictureFormatE format);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_PICTUREMARK_H
