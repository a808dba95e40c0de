// The status every platform call answers. Where the host defines a number for a failure
// that the module tests for (72, 76, 190), the same number is used, so module code written
// against the host's values reads the same here.
#pragma once

#include <string_view>

namespace cad {

enum class ErrorStatus : int {
    eOk = 0,
    eNotImplementedYet = 1,
    eNotApplicable = 2,
    eInvalidInput = 3,
    eOutOfMemory = 6,
    eBufferTooSmall = 7,
    eInvalidOpenState = 8,
    eNullObjectId = 10,
    eWrongObjectType = 11,
    eKeyNotFound = 12,
    eDuplicateKey = 13,
    eWasErased = 14,
    eWasOpenedForRead = 15,
    eWasOpenedForWrite = 16,
    eWasNotOpenedForWrite = 17,
    eNotOpenedForRead = 18,
    eAtMaxReaders = 19,
    eSelfReference = 20,
    eInvalidKey = 21,
    eNotInDatabase = 22,
    eWrongDatabase = 23,
    eFileAccessErr = 72,       // the file is locked or shared in a way that refuses this open
    eFileNotFound = 76,
    eFileWriteError = 80,
    eFileReadError = 81,
    eNotSupported = 100,
    eBadDwgFile = 190,         // the drawing is damaged: it cannot be loaded
    eVersionNotSupported = 191,
    eLockViolation = 300,      // a document lock was refused: another lock already holds it
    eUnknownError = 999,
};

// A short English name for logs and command-line messages ("eFileNotFound").
constexpr std::string_view errorStatusName(ErrorStatus status) {
    switch (status) {
        case ErrorStatus::eOk: return "eOk";
        case ErrorStatus::eNotImplementedYet: return "eNotImplementedYet";
        case ErrorStatus::eNotApplicable: return "eNotApplicable";
        case ErrorStatus::eInvalidInput: return "eInvalidInput";
        case ErrorStatus::eOutOfMemory: return "eOutOfMemory";
        case ErrorStatus::eBufferTooSmall: return "eBufferTooSmall";
        case ErrorStatus::eInvalidOpenState: return "eInvalidOpenState";
        case ErrorStatus::eNullObjectId: return "eNullObjectId";
        case ErrorStatus::eWrongObjectType: return "eWrongObjectType";
        case ErrorStatus::eKeyNotFound: return "eKeyNotFound";
        case ErrorStatus::eDuplicateKey: return "eDuplicateKey";
        case ErrorStatus::eWasErased: return "eWasErased";
        case ErrorStatus::eWasOpenedForRead: return "eWasOpenedForRead";
        case ErrorStatus::eWasOpenedForWrite: return "eWasOpenedForWrite";
        case ErrorStatus::eWasNotOpenedForWrite: return "eWasNotOpenedForWrite";
        case ErrorStatus::eNotOpenedForRead: return "eNotOpenedForRead";
        case ErrorStatus::eAtMaxReaders: return "eAtMaxReaders";
        case ErrorStatus::eSelfReference: return "eSelfReference";
        case ErrorStatus::eInvalidKey: return "eInvalidKey";
        case ErrorStatus::eNotInDatabase: return "eNotInDatabase";
        case ErrorStatus::eWrongDatabase: return "eWrongDatabase";
        case ErrorStatus::eFileAccessErr: return "eFileAccessErr";
        case ErrorStatus::eFileNotFound: return "eFileNotFound";
        case ErrorStatus::eFileWriteError: return "eFileWriteError";
        case ErrorStatus::eFileReadError: return "eFileReadError";
        case ErrorStatus::eNotSupported: return "eNotSupported";
        case ErrorStatus::eBadDwgFile: return "eBadDwgFile";
        case ErrorStatus::eVersionNotSupported: return "eVersionNotSupported";
        case ErrorStatus::eLockViolation: return "eLockViolation";
        case ErrorStatus::eUnknownError: return "eUnknownError";
    }
    return "eUnknownError";
}

}  // namespace cad
