// The result codes of the dialog and of the rooms below it. 0 is success; the texts that the user reads for
// them stand with OrluneDlg::ShowError.
#ifndef ORLUNE_LUT_RESULTCODES_H
#define ORLUNE_LUT_RESULTCODES_H

namespace orlune {

enum ResultCode : int {
    kSuccess = 0,
    kOpenFailed = -1001,       // a file can't be opened
    kInvalidData = -1002,      // a file's contents are no table
    kBadFileName = -1003,      // a file name to save under has another suffix than lut and csv
    kNodeMissing = -1005,      // a node is absent or has another type
    kSetLutFailed = -1007,     // the probe of the camera's LUT nodes failed
    kLutNotSupported = -1008,  // named for the user's box; nothing gives it
    kEmptyCatalogue = -1009,   // no standard curve at all
    kStandardMissing = -1010,  // a standard curve's file is missing
    kDeviceInfoFailed = -1011, // named for the user's box; nothing gives it
    kInvalidParameter = -1012, // a bad argument, a register without room for a table, or no memory
    kReported = -1013          // the user has seen the failure, or there is nothing to see
};

} // namespace orlune

#endif
