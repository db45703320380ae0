#include "fileops/operation.h"

OperationAnswers operationAnswers;
