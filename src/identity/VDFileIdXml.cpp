// The XML form of file ids.

#include "StoredRecord.h"
#include "VDFileId.h"
#include "VDFileIdNameWatch.h"

#include "frame/VFDaxReport.h"

#include "vdbase/VFNumber.h"
#include "vdxml/VDUXmlHelper.h"

namespace {

constexpr int VVVersion = 2;
constexpr const char* VVReadRoutine = "VDFileId::FromXml";
constexpr const char* VVWriteRoutine = "VDFileId::ToXml";

bool Refuse(const VDString& name)
{
    return VFDaxReport(DaxError::XmlAttribute, VVWriteRoutine, {.appended = " - " + name}) != 0;
}

/// Sets attributes. A text that XML can't hold fails: another one would come back for it.
class Writer
{
public:
    explicit Writer(const DOM_Element& element) : element_(element) {}

    bool Number(const char* name, long value) { return Text(name, VFFormat64(value, 10, 0)); }
    bool Flag(const char* name, bool value) { return Text(name, value ? "True" : "False"); }
    /// Something to be read: bytes that are no UTF-8 become characters.
    bool Text(const char* name, const VDString& value)
    {
        DOMString text;
        return (VDUXmlHelper::VDToDOMString(value, &text) && value.Find('\0') < 0 && Set(name, text)) || Refuse(name);
    }
    /// Something that is found by its bytes.
    bool Name(const char* name, const VDString& value)
    {
        const DOMString text = VDUXmlHelper::VDToDOMString(value);
        return (VDUXmlHelper::DOMToVDString(text) == value && Set(name, text)) || Refuse(name);
    }

private:
    bool Set(const char* name, const DOMString& text)
    {
        return element_.SetAttribute(VDUXmlHelper::VDToDOMString(name), text);
    }

    DOM_Element element_;
};

/// Reads attributes; each must be there.
class Reader
{
public:
    explicit Reader(const DOM_Element& element) : element_(element) {}

    template <class Value>
    bool Number(const char* name, Value& value)
    {
        VDString text;
        int number = 0;
        if (!Text(name, text) || !VFAscToNum(text, &number))
            return false;
        value = number;
        return true;
    }
    bool Flag(const char* name, bool& value)
    {
        VDString text;
        return Text(name, text) && VFAscToBoolean(text, &value);
    }
    bool Name(const char* name, VDString& value) { return Text(name, value); }
    bool Text(const char* name, VDString& value) { return VDUXmlHelper::GetAttribute(element_, name, &value); }

private:
    DOM_Element element_;
};

/// The attributes of an id in their order, for both directions. Which versions have an associated filename is for the
/// `associated` step to say.
template <class Stream, class Record, class Limits, class Associated>
bool VFTransfer(Stream stream, Record& record, Limits& limits, Associated associated)
{
    return stream.Number("nameForm", limits.nameForm) && stream.Name("filename", record.filename) &&
           stream.Name("extension", record.extension) && stream.Number("id", record.fileId) &&
           stream.Number("subId", record.subId) && stream.Number("fileVersion", record.version) &&
           stream.Number("fileSubVersion", record.subVersion) && stream.Number("opSys", record.opSys) &&
           stream.Number("run", record.run) && stream.Number("mode", record.mode) && stream.Number("burst", record.burst) &&
           stream.Text("title", record.title) && stream.Text("modeTitle", record.modeTitle) &&
           stream.Name("fullPathName", record.fullPathName) &&
           stream.Name("extraMetadataFilename", record.extraMetadataFilename) && associated(stream) &&
           stream.Flag("showChannels", record.showChannels) && stream.Flag("selected", record.selected) &&
           stream.Flag("identified", record.identified) && stream.Flag("infoLoaded", record.infoLoaded) &&
           stream.Flag("identByExtension", record.identByExtension) &&
           stream.Flag("loadInfoWhenNeeded", record.loadInfoWhenNeeded) && stream.Number("chanDigits", limits.chanDigits) &&
           stream.Number("dataSource", limits.dataSource) && stream.Name("dataPath", record.dataPath) &&
           stream.Name("objectReference", record.objectReference) && stream.Flag("folderTest", record.folderTest) &&
           stream.Name("originalExtension", record.originalExtension);
}

template <class Stream, class Channel>
bool VFTransferChannel(Stream stream, Channel& channel)
{
    return stream.Number("num", channel.number) && stream.Flag("sel", channel.selected) &&
           stream.Text("title", channel.title) && stream.Text("units", channel.units) &&
           stream.Number("tsType", channel.type) && stream.Number("fileNum", channel.fileChanNumber);
}

/// Appends the element of the preferences. A key that is no name of XML, or a value that it can't hold, fails.
bool VFAppendPreferences(DOM_Element& element, const VDFileIdPreferences& preferences)
{
    constexpr int mostThatAreRead = 1000;
    preferences.ToXml(element);
    DOM_Element child;
    if (!VDUXmlHelper::GetSingleElementChild(element, "Preferences", &child))
        return Refuse("Preferences");
    for (int index = 0; index < preferences.GetCount(); ++index) {
        VDString value;
        const VDString key = preferences.GetKeyAt(index);
        if (index >= mostThatAreRead || !VDUXmlHelper::GetAttribute(child, key, &value) ||
            value != preferences.GetStringAt(index))
            return Refuse(key);
    }
    return true;
}

}  // namespace

int VDFileId::ToXml(VDString* xml) const
{
    if (xml == nullptr)
        return 0;
    DOM_Document document = DOM_Document::CreateDocument();
    DOM_Element root = document.CreateElement(VDUXmlHelper::VDToDOMString("FileId"));
    if (!document.AppendChild(root))
        return 0;
    Writer writer(root);
    const VDStoredLimits limits = VDStoredLimits::Of(record_);
    const auto associated = [&](Writer& stream) { return stream.Name("associatedFilename", record_.associatedFilename); };
    if (!writer.Number("version", VVVersion) || !VFTransfer(writer, record_, limits, associated))
        return 0;
    const DOMString channelName = VDUXmlHelper::VDToDOMString("Chan");
    for (const VDFileIdChanInfo& channel : record_.channels) {
        DOM_Element element = document.CreateElement(channelName);
        if (!root.AppendChild(element) || !VFTransferChannel(Writer(element), channel))
            return 0;
    }
    VDUDataBuffer text;
    if ((record_.preferences && !VFAppendPreferences(root, *record_.preferences)) ||
        !VDUXmlHelper::ConvertNodeTreeToText(root, &text))
        return 0;
    *xml = VDString(text.View());
    return 1;
}

int VDFileId::FromXml(const VDString* xml)
{
    Clear();
    if (xml == nullptr || !ReadXml(*xml))
        return VFDaxReport(DaxError::XmlFormat, VVReadRoutine, {.chain = 1});
    return 1;
}

bool VDFileId::ReadXml(const VDString& xml)
{
    const NameWatch watch(*this);
    // The reason of a failure stands beneath the report on it; what was recorded before has nothing to do with it.
    VFErrorClear();
    const DOM_Document document = VDUXmlHelper::ParseXml(xml, xml.GetLength());
    const DOM_Element root = document.GetDocumentElement();
    Reader reader(root);
    VDStoredLimits limits;
    int version = 0;
    const auto passOver = [](const Reader&) { return true; };
    if (root.IsNull() || !reader.Number("version", version) || !VFTransfer(reader, record_, limits, passOver))
        return false;
    if (version != 1 && version != 2)
        return VFDaxReport(DaxError::XmlVersionUnknown, VVReadRoutine, {.chain = 0}) != 0;
    if ((version == 2 && !reader.Name("associatedFilename", record_.associatedFilename)) || !limits.Check(VVReadRoutine))
        return false;
    limits.Apply(record_);
    const DOMString channelName = VDUXmlHelper::VDToDOMString("Chan");
    const DOMString preferencesName = VDUXmlHelper::VDToDOMString("Preferences");
    for (DOM_Node node = root.GetFirstChild(); !node.IsNull(); node = node.GetNextSibling()) {
        if (node.GetNodeType() != VTDomElement)
            continue;
        if (node.GetNodeName() == channelName) {
            VDFileIdChanInfo channel;
            if (!VFTransferChannel(Reader(DOM_Element(node)), channel))
                return false;
            record_.channels.Append(std::move(channel));
        } else if (node.GetNodeName() == preferencesName) {
            record_.preferences.emplace();
            if (record_.preferences->FromXml(node) == 0)
                return false;
        }
    }
    return true;
}
