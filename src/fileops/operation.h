#pragma once

#include <atomic>
#include <cstdint>

#include "foundation/westring.h"

// What one step of an operation came to.
enum class [[nodiscard]] Outcome{
    Done,
    LeftInPlace,  // skipped, or something inside it was: the source stays, the entry stays tagged
    Failed,       // an error the user was told of; as LeftInPlace for what follows
    Cancelled     // the whole command ends
};

enum class OverwriteMode { Ask, All, None, AllOlder };
enum class StandingAnswer { Ask, All, None };

// The answers that hold for the rest of one command.
struct OperationAnswers {
  OverwriteMode overwrite = OverwriteMode::Ask;
  StandingAnswer readOnly = StandingAnswer::Ask;
  StandingAnswer openFile = StandingAnswer::Ask;
  bool mergeAll = false;
  bool deleteTree = false;  // "All" at the tree question
};

// Reset at the start of every copy, move or delete command. Application thread.
extern OperationAnswers operationAnswers;
