#include "CanLog.h"
#include "CanLogDecoder.h"
#include "Commands.h"
#include "LineReader.h"
#include "NumberText.h"
#include "TextTable.h"
#include "ToolError.h"

#include "vdbase/VDUnicodeString.h"

#include <charconv>
#include <unistd.h>

namespace {

/// `dax dbc`: what a CAN database defines, and frames decoded with it.
class VDDbcCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDJson Show(VDCommandContext& context, const VDCanDatabase& database) const;
    VDJson DecodeOne(VDCommandContext& context, const VDCanDatabase& database) const;
    VDJson DecodeLog(VDCommandContext& context, const VDCanDatabase& database) const;

    std::string filename_;
    std::vector<std::string> decode_;
    std::string log_;
};

constexpr const char* VVRoutine = "VDDbcCommand::Run";

std::string Text(const VDString& text)
{
    return VFTextAsUtf8(text).Str();
}

std::vector<std::string> Receivers(const VDCanChanDefinition& signal)
{
    std::vector<std::string> names;
    for (const VDString& name : signal.GetReceivers())
        names.push_back(Text(name));
    return names;
}

VDJson SignalJson(const VDCanChanDefinition& signal)
{
    VDArrayWithSort<long> values;
    VDStringArray texts;
    signal.GetEnumOptions(&values, &texts);
    VDJson enums = VDJson::array();
    for (int index = 0; index < values.GetSize(); ++index)
        enums.push_back({{"value", values[index]}, {"text", Text(texts[index])}});
    return {{"title", Text(signal.GetTitle())},
            {"startBit", signal.GetStartBit()},
            {"numBits", signal.GetNumBits()},
            {"bigEndian", signal.GetBigEndian() != 0},
            {"signed", signal.GetIsSigned() != 0},
            {"factor", signal.GetFactor()},
            {"offset", signal.GetOffset()},
            {"min", signal.GetMinval()},
            {"max", signal.GetMaxval()},
            {"units", Text(signal.GetUnits())},
            {"multiplexSwitch", signal.IsMultiplexSwitch() != 0},
            {"multiplexed", signal.IsMultiplexed() != 0},
            {"multiplexId", signal.GetMultiplexId()},
            {"receivers", Receivers(signal)},
            {"description", Text(signal.GetDescription())},
            {"enums", enums}};
}

VDJson FrameJson(const VDCanFrame& frame)
{
    const VDCanFrameDefinition& definition = *frame.definition;
    VDJson signals = VDJson::array();
    for (const VDCanChanDefinition* signal : frame.signals)
        signals.push_back(SignalJson(*signal));
    return {{"id", definition.GetFrameId()},
            {"name", Text(definition.GetFrameName())},
            {"bytes", definition.GetNumBytes()},
            {"transmitter", Text(definition.GetTransmitterName())},
            {"description", Text(definition.GetDescription())},
            {"transmissionMode", Text(definition.GetTransmissionMode())},
            {"samplePeriod", definition.GetSamplePeriod()},
            {"signals", std::move(signals)}};
}

std::string MultiplexText(const VDCanChanDefinition& signal)
{
    if (signal.IsMultiplexSwitch())
        return "M";
    return signal.IsMultiplexed() ? "m" + std::to_string(signal.GetMultiplexId()) : "";
}

/// An id in decimal or, behind "0x", in hexadecimal.
bool ReadId(std::string_view text, unsigned long* id)
{
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hex ? 2 : 0);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *id, hex ? 16 : 10);
    return error == std::errc() && end == text.data() + text.size();
}

CLI::App* VDDbcCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("dbc", "Show a CAN database, or decode frames with it");
    command->add_option("FILE", filename_, "The database, in the DBC format")->required();
    CLI::Option* decode =
        command->add_option("--decode", decode_, "Decode one frame: its id (decimal, or 0x and hexadecimal) and its bytes")
            ->expected(2)
            ->type_name("ID HEXBYTES");
    command
        ->add_option(
            "--frames", log_,
            "Decode the frames of a candump log, - for the standard input, to CSV or with --json to an object a line")
        ->type_name("LOG")
        ->excludes(decode);
    return command;
}

VDJson VDDbcCommand::Run(VDCommandContext& context)
{
    const VDCanDatabase database(filename_);
    if (!decode_.empty())
        return DecodeOne(context, database);
    return log_.empty() ? Show(context, database) : DecodeLog(context, database);
}

VDJson VDDbcCommand::Show(VDCommandContext& context, const VDCanDatabase& database) const
{
    if (context.IsJson()) {
        VDJson frames = VDJson::array();
        for (const VDCanFrame& frame : database.GetFrames())
            frames.push_back(FrameJson(frame));
        return {{"frames", std::move(frames)}};
    }
    for (const VDCanFrame& frame : database.GetFrames()) {
        const VDCanFrameDefinition& definition = *frame.definition;
        std::string heading = std::to_string(definition.GetFrameId()) + " " + Text(definition.GetFrameName()) + ": " +
                              std::to_string(definition.GetNumBytes()) + " bytes";
        const std::pair<const char*, std::string> details[] = {{"from ", Text(definition.GetTransmitterName())},
                                                               {"mode ", Text(definition.GetTransmissionMode())},
                                                               {"", Text(definition.GetDescription())}};
        for (const auto& [label, text] : details)
            heading += text.empty() ? "" : ", " + (label + text);
        if (definition.GetSamplePeriod() != 0)
            heading += ", period " + VFNumberText(definition.GetSamplePeriod());
        context.Out().PutLine(heading);
        VDTextTable table("lrrllrrrrlll");
        table.Add(
            {"SIGNAL", "START", "BITS", "ORDER", "SIGN", "FACTOR", "OFFSET", "MIN", "MAX", "UNITS", "MUX", "DESCRIPTION"});
        for (const VDCanChanDefinition* signal : frame.signals)
            table.Add({Text(signal->GetTitle()), std::to_string(signal->GetStartBit()), std::to_string(signal->GetNumBits()),
                       signal->GetBigEndian() ? "1" : "0", signal->GetIsSigned() ? "-" : "+",
                       VFNumberText(signal->GetFactor()), VFNumberText(signal->GetOffset()),
                       VFNumberText(signal->GetMinval()), VFNumberText(signal->GetMaxval()), Text(signal->GetUnits()),
                       MultiplexText(*signal), Text(signal->GetDescription())});
        table.Print(context.Out(), 2);
        context.Out().Write("\n");
    }
    return {};
}

VDJson VDDbcCommand::DecodeOne(VDCommandContext& context, const VDCanDatabase& database) const
{
    unsigned long id = 0;
    VDCanLogFrame data;
    if (!ReadId(decode_[0], &id))
        VFFail(DaxToolError::Usage, "'" + decode_[0] + "' is no frame id", VVRoutine);
    if (!VFReadHexBytes(decode_[1], &data))
        VFFail(DaxToolError::Usage, "'" + decode_[1] + "' isn't up to 64 hexadecimal bytes", VVRoutine);
    const VDCanFrame* const frame = database.Find(id);
    if (frame == nullptr)
        VFFail(DaxToolError::UnknownFrame, "The database has no frame " + decode_[0], VVRoutine);
    if (data.numBytes < frame->GetNumBytes())
        VFFail(DaxToolError::FrameTooShort,
               "The frame has " + std::to_string(frame->GetNumBytes()) + " bytes, and there are only " +
                   std::to_string(data.numBytes),
               VVRoutine);

    VDCanValues values;
    values.Decode(*frame, data.data.data());
    // Those that can't be decoded are left out, and named.
    for (int signal = 0; signal < frame->decoder->GetSignalCount(); ++signal)
        if (std::int64_t unused = 0; frame->decoder->DecodeRaw(signal, {data.data.data(), 0, 1}, &unused, nullptr) < 0)
            context.TakeErrors();

    VDJson list = VDJson::array();
    VDTextTable table("lrrll");
    table.Add({"SIGNAL", "RAW", "PHYSICAL", "UNITS", "TEXT"});
    for (std::size_t index = 0; index < frame->signals.size(); ++index) {
        if (values.present[index] == 0)
            continue;
        const VDCanChanDefinition& signal = *frame->signals[index];
        const std::int64_t raw = values.raw[index];
        const double physical = values.physical[index];
        VDString text;
        signal.GetEnumText(raw, &text);
        list.push_back({{"signal", Text(signal.GetTitle())},
                        {"raw", raw},
                        {"physical", physical},
                        {"units", Text(signal.GetUnits())},
                        {"text", Text(text)}});
        table.Add({Text(signal.GetTitle()), VFNumberText(raw), VFNumberText(physical), Text(signal.GetUnits()), Text(text)});
    }
    if (context.IsJson())
        return {
            {"id", frame->definition->GetFrameId()}, {"frame", Text(frame->definition->GetFrameName())}, {"signals", list}};
    table.Print(context.Out());
    return {};
}

VDJson VDDbcCommand::DecodeLog(VDCommandContext& context, const VDCanDatabase& database) const
{
    VDLineReader log(log_);
    VDCanLogDecoder decoder(database, context.IsJson(), context.Out());
    context.document = VTDocument::Written;
    std::string_view line;
    while (log.Read(&line))
        decoder.AddLine(line);
    context.Out().Flush();
    VFWriteAll(STDERR_FILENO, decoder.GetCoverage());
    if (!decoder.HasFrames())
        VFFail(DaxToolError::NoFrame, "No line of the log is a frame: " + log_, VVRoutine);
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeDbcCommand()
{
    return std::make_unique<VDDbcCommand>();
}
