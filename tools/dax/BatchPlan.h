#pragma once

#include "BatchCopy.h"
#include "FoundTests.h"

#include <filesystem>

/// One copy of many.
struct VDBatchItem
{
    enum class State { Waiting, LeftOut, Copied, Failed };

    std::string input;               ///< as it is called in the result
    std::vector<std::string> files;  ///< of the input
    std::string output;
    std::vector<std::string> arguments;  ///< of the process that makes the copy
    State state = State::Waiting;
    VDJson document;  ///< of that process
    std::vector<VDErrorReport> errors;
};

/// Finds the tests to copy and says what each copy is called.
class VDBatchPlan
{
public:
    VDBatchPlan(VDCommandContext& context, const VDBatchCopy& batch, const VDCopyOptions& options);

    /// A test that can't be copied becomes an item that has failed.
    void Add(const std::string& spec);
    /// Throws if two copies would have one name, or that of an input.
    void CheckOutputs() const;
    std::vector<VDBatchItem> TakeItems() { return std::move(items_); }
    /// Tests that lie in the folder for the copies.
    int CountPassedOver() const { return passedOver_; }

private:
    void AddPiece(const std::string& piece);
    void AddTest(const std::filesystem::path& base, const std::string& piece, bool fromFile, const VDFileIdHandle& test);
    std::string MakeName(const std::filesystem::path& folder, const VDFileIdHandle& test, const VDFileType& format) const;
    std::vector<std::string> MakeArguments(const std::string& piece, bool fromFile, const VDFileIdHandle& test) const;

    VDCommandContext& context_;
    const VDBatchCopy& batch_;
    const VDCopyOptions& options_;
    std::filesystem::path folder_;
    std::vector<VDBatchItem> items_;
    int passedOver_ = 0;
};
