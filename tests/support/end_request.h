#pragma once

#include "foundation/signals.h"

// The program is asked to end for as long as this lives.
class EndRequest {
 public:
  EndRequest() { requestEnd(); }
  ~EndRequest() { forgetEndRequest(); }
  EndRequest(const EndRequest&) = delete;
  EndRequest& operator=(const EndRequest&) = delete;
};
