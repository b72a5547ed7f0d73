#include "BatchPlan.h"

#include "ChannelSelection.h"
#include "CopyFormat.h"
#include "OutputName.h"
#include "TestListing.h"
#include "ToolError.h"

#include <algorithm>
#include <map>

namespace fs = std::filesystem;

namespace {

constexpr const char* VVRoutine = "VDBatchPlan";

bool VFIsWithin(const fs::path& path, const fs::path& folder)
{
    const fs::path relative = path.lexically_relative(folder);
    return !relative.empty() && *relative.begin() != "..";
}

/// The format that is asked for, or the storage format for this kind of data.
VDFileType VFBatchFormat(const VDRegistry& registry, const VDFileIdHandle& test, const std::string& keyword)
{
    const VDFileType own = VFGetFileType(registry, test);
    for (const VDFileType& type : VFGetTargetTypes(registry, own))
        if (keyword.empty() ? VFHasExtension(type, "") : VDString(type.keyword).CompareNoCase(keyword.c_str()) == 0)
            return type;
    VFFail(DaxToolError::NoFormat,
           keyword.empty() ? "No storage format holds " + own.accessName
                           : "The format " + keyword + " can't be written, or doesn't hold " + own.accessName,
           VVRoutine);
}

/// Whether the name is that of a folder that is a test.
bool VFIsFolderTest(const std::string& name)
{
    char isTest = 0;
    const VDFileIdHandle id(FIDCreate());
    return id && FIDSetFilename(id.Get(), VTNameFormFile, name.c_str(), "") && FIDGetFolderTest(id.Get(), &isTest) &&
           isTest != 0;
}

struct SubTest
{
    int run = -1;
    int burst = -1;
    int mode = -1;

    explicit SubTest(const VDFileIdHandle& test)
    {
        VFCheck(FIDGetRunNumber(test.Get(), &run));
        VFCheck(FIDGetBurstNumber(test.Get(), &burst));
        VFCheck(FIDGetModeNumber(test.Get(), &mode, nullptr));
    }
    bool IsWhole() const { return run < 0 && burst < 0 && mode < 0; }
    bool operator==(const SubTest&) const = default;
};

/// Position of a test in its file, from 1 in the order of identification.
int VFFindPosition(const VDRegistry& registry, const std::string& file, const SubTest& wanted)
{
    const std::vector<VDFileIdHandle> tests = VFIdentify(registry, file, false, false).tests;
    const auto found =
        std::find_if(tests.begin(), tests.end(), [&](const VDFileIdHandle& test) { return SubTest(test) == wanted; });
    if (found == tests.end())
        VFFail(DaxToolError::UnknownTest, "The test isn't in its file any more: " + file, VVRoutine);
    return static_cast<int>(found - tests.begin()) + 1;
}

std::string VFListNumbers(const VDFileIdHandle& test)
{
    VDArrayWithSort<long> numbers;
    VFCheck(FIDGetChans(test.Get(), &numbers));
    std::vector<VDChannel> channels(static_cast<std::size_t>(numbers.GetSize()));
    for (int index = 0; index < numbers.GetSize(); ++index)
        channels[static_cast<std::size_t>(index)].number = static_cast<int>(numbers[index]);
    return VFChannelListText(channels, ',');
}

/// The spec of a test of several files.
std::string VFMakeSpec(const VDFileIdHandle& test)
{
    VDString stem;
    VDString extension;
    VFCheck(FIDGetFilename(test.Get(), &stem, &extension));
    return VFQuoteForSpec(stem.Str()) + ";x" + extension.Str();
}

}  // namespace

VDBatchPlan::VDBatchPlan(VDCommandContext& context, const VDBatchCopy& batch, const VDCopyOptions& options)
    : context_(context), batch_(batch), options_(options), folder_(fs::absolute(batch.folder_).lexically_normal())
{
    if (!folder_.has_filename())
        folder_ = folder_.parent_path();
}

void VDBatchPlan::Add(const std::string& spec)
{
    if (VFIsFile(spec) || spec.starts_with('@') || spec.find("://") != std::string::npos) {
        AddPiece(spec);
        return;
    }
    // Each piece has a folder of its own, below which the copies lie as the tests do.
    for (std::size_t begin = 0; begin <= spec.size();) {
        const std::size_t end = std::min(spec.find('|', begin), spec.size());
        if (end > begin)
            AddPiece(spec.substr(begin, end - begin));
        begin = end + 1;
    }
}

void VDBatchPlan::AddPiece(const std::string& piece)
{
    std::error_code none;
    const bool isFolder = fs::is_directory(piece, none) && !VFIsFolderTest(piece);
    const std::string text = isFolder ? (fs::path(piece) / "*").string() : piece;
    const std::string pattern = VFIsFile(text) ? text : text.substr(0, text.find(';'));
    const fs::path base = fs::absolute(pattern).lexically_normal().parent_path();
    try {
        VDFoundTests found = VFFindTests(context_.Registry(), text, batch_.recurse_);
        for (std::size_t index = 0; index < found.problems.size(); ++index) {
            VDBatchItem& item = items_.emplace_back();
            item.input = found.unread[index];
            item.state = VDBatchItem::State::Failed;
            item.errors = {found.problems[index]};
        }
        if (found.fromFile && options_.test > 0) {
            VDTestArguments one;
            one.file = text;
            one.test = options_.test;
            found.tests.clear();
            found.tests.push_back(VFChooseTest(context_.Registry(), one));
        }
        for (const VDFileIdHandle& test : found.tests)
            AddTest(base, text, found.fromFile, test);
    } catch (const VDFailure&) {
        VDBatchItem& item = items_.emplace_back();
        item.input = piece;
        item.state = VDBatchItem::State::Failed;
        item.errors = VFTakeErrors();
    }
}

void VDBatchPlan::AddTest(const fs::path& base, const std::string& piece, bool fromFile, const VDFileIdHandle& test)
{
    VDString name;
    VDString extension;
    VDString title;
    VFCheck(FIDGetFilename(test.Get(), &name, &extension));
    const fs::path place = fs::path(name.Str()).parent_path();
    // Copies of an earlier call are no inputs of the next one.
    if (VFIsWithin(place, folder_) && !VFIsWithin(base, folder_)) {
        ++passedOver_;
        return;
    }
    VDBatchItem& item = items_.emplace_back();
    try {
        VFCheck(FIDGetTestDescriptor(test.Get(), VTTestDescFullTitle, &title));
        item.input = title.Str();
        item.files = VFGetTestFiles(test.Get());
        const VDFileType format = VFBatchFormat(context_.Registry(), test, options_.keyword);
        const fs::path below = place.lexically_relative(base);
        const bool isBelow = !below.empty() && *below.begin() != "..";
        item.output = MakeName(isBelow ? (folder_ / below).lexically_normal() : folder_, test, format);
        item.arguments = MakeArguments(piece, fromFile, test);
        item.arguments.insert(item.arguments.begin() + 1, {item.output, "--format", format.keyword});
    } catch (const VDFailure&) {
        item.state = VDBatchItem::State::Failed;
        item.errors = VFTakeErrors();
    }
}

std::string VDBatchPlan::MakeName(const fs::path& folder, const VDFileIdHandle& test, const VDFileType& format) const
{
    if (!options_.nameForm.empty()) {
        VDTestArguments arguments;
        VFCheck(FIDAddRef(test.Get()));
        const VDInputTest input(context_, arguments, VDFileIdHandle(test.Get()));
        const fs::path made = VFMakeOutputName(context_, input.Access(), options_.nameForm, "", format);
        return (folder / made.filename()).string();
    }
    const VDFileIdHandle target(FIDCreate());
    VFCheck(static_cast<bool>(target));
    VFCheck(FIDSetFileId(target.Get(), format.fileId, format.subId));
    const int form = !batch_.prefix_.empty() ? VTOutputPrefix : !batch_.suffix_.empty() ? VTOutputSuffix : VTOutputSameName;
    const std::string& text = form == VTOutputPrefix ? batch_.prefix_ : batch_.suffix_;
    VFCheck(FIDCreateOutputFromId(target.Get(), test.Get(), 0, form, text.c_str()));
    VDString name;
    VDString extension;
    VFCheck(FIDGetFilename(target.Get(), &name, &extension));
    return (folder / fs::path(name.Str()).filename()).string();
}

std::vector<std::string> VDBatchPlan::MakeArguments(const std::string& piece, bool fromFile,
                                                    const VDFileIdHandle& test) const
{
    int form = 0;
    VFCheck(FIDGetNameForm(test.Get(), &form));
    std::vector<std::string> arguments;
    if (form == VTNameFormFile) {
        // By its file, whatever signs its name has.
        const std::string file = VFGetTestFiles(test.Get()).front();
        arguments = {file};
        if (const SubTest numbers(test); !numbers.IsWhole())
            arguments.insert(arguments.end(),
                             {"--test", std::to_string(VFFindPosition(context_.Registry(), file, numbers))});
    } else {
        arguments = {VFMakeSpec(test)};
    }
    std::vector<std::string> channels = options_.channels;
    if (channels.empty() && !fromFile && piece.find(';') != std::string::npos)
        channels.push_back(VFListNumbers(test));
    for (const std::string& list : channels)
        arguments.insert(arguments.end(), {"--chan", list});
    if (options_.strict)
        arguments.emplace_back("--strict");
    if (options_.noMeta)
        arguments.emplace_back("--no-meta");
    return arguments;
}

void VDBatchPlan::CheckOutputs() const
{
    std::map<std::string, std::string> owners;
    for (const VDBatchItem& item : items_)
        for (const std::string& file : item.files)
            owners.emplace(file, "the input " + file);
    for (const VDBatchItem& item : items_) {
        if (item.output.empty())
            continue;
        const auto [other, isNew] = owners.emplace(item.output, item.input);
        if (!isNew)
            VFFail(DaxToolError::SameOutput,
                   "Nothing is copied, since " + item.input + " would have the same output as " + other->second + ": " +
                       item.output,
                   VVRoutine);
    }
}
