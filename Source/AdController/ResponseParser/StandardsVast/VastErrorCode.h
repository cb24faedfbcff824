#pragma once

namespace tavo {

// What an ad server is told in [ERRORCODE], by the table of VAST 4.2.
enum class VastErrorCode : int {
  badXml = 100,
  badSchema = 101,
  badVersion = 102,
  unexpectedAdType = 200,
  unexpectedLinearity = 201,
  blockedCategory = 205,
  wrapper = 300,
  wrapperTimeout = 301,  // or not there
  wrapperLimit = 302,
  noAd = 303,
  mediaNotFound = 401,
  mediaTimeout = 402,
  noSupportedMedia = 403,
  mediaProblem = 405,
  vpaid = 901,
};

}  // namespace tavo
