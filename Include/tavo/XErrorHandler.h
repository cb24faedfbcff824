#pragma once

#include <string>

#include <tavo/Export.h>

namespace tavo {

// A small persistent store of error records, offered to the host: the library itself writes nothing
// there. The records are rows of the table "ErrorLogs" (columns "errorId", "errorDesc" and
// "timeStamp", UTC) in the SQLite file "CorvaneTAVOSDKDB.sqlite", which is made on first use in the
// last of the folders for documents that the platform names.
class TAVO_EXPORT XErrorHandler {
 public:
  // Adds one record with the time of now, and returns when it is on disk. Blocks the calling thread
  // meanwhile, some milliseconds on an idle machine and up to seconds while another process writes.
  // Any thread; every call opens the store for itself. Both texts are UTF-8; bytes that are not are
  // replaced.
  //
  // The store is taken to be sound: that it cannot be opened or written is a FatalFailure, which
  // ends the process unless a handler is set.
  static void addErrorWithErrorId(const std::string& errorId, const std::string& errorDescription);
};

}  // namespace tavo
