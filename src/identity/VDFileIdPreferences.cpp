#include "daxlib/VDFileIdPreferences.h"

#include "frame/VFDaxReport.h"

#include "vdbase/VDKeyValueArray.h"
#include "vdbase/VFNumber.h"
#include "vdxml/VDUXmlHelper.h"

namespace {

char ReportNotFound(const char* key, const char* routine)
{
    return static_cast<char>(VFDaxReport(DaxError::PreferenceNotFound, routine, {.appended = key}));
}

}  // namespace

VDFileIdPreferences::VDFileIdPreferences() : pairs_(std::make_unique<VDKeyValueArray>())
{
    pairs_->SetKeyType(1);
}

VDFileIdPreferences::VDFileIdPreferences(const VDFileIdPreferences& other)
    : pairs_(std::make_unique<VDKeyValueArray>(*other.pairs_))
{
}

VDFileIdPreferences& VDFileIdPreferences::operator=(const VDFileIdPreferences& other)
{
    *pairs_ = *other.pairs_;
    return *this;
}

VDFileIdPreferences::~VDFileIdPreferences() = default;

void VDFileIdPreferences::Clear()
{
    pairs_->Clear();
}

void VDFileIdPreferences::SetString(const char* key, const char* value)
{
    pairs_->Set(VDString(key), VDString(value));
}

void VDFileIdPreferences::SetInt(const char* key, int value)
{
    SetString(key, VFFormat64(value, 10, 0));
}

int VDFileIdPreferences::GetCount() const
{
    return pairs_->GetSize();
}

VDString VDFileIdPreferences::GetKeyAt(int index) const
{
    return pairs_->GetKeyAt(index);
}

VDString VDFileIdPreferences::GetStringAt(int index) const
{
    return pairs_->GetValueAt(index);
}

char VDFileIdPreferences::GetString(const char* key, VDString* value) const
{
    VDString found;
    pairs_->Get(VDString(key), &found);
    const bool isFound = !found.IsEmpty();
    if (value != nullptr)
        *value = std::move(found);
    return isFound ? 1 : ReportNotFound(key, "VDFileIdPreferences::GetString");
}

char VDFileIdPreferences::GetInt(const char* key, int* value) const
{
    VDString text;
    int number = 0;
    const bool isFound = pairs_->Get(VDString(key), &text) && VFAscToNum(text, &number);
    if (value != nullptr)
        *value = number;
    return isFound ? 1 : ReportNotFound(key, "VDFileIdPreferences::GetInt");
}

void VDFileIdPreferences::AppendToTestDescriptor(VDString& text) const
{
    for (int index = 0; index < pairs_->GetSize(); ++index)
        text += ";p" + pairs_->GetKeyAt(index) + "=" + pairs_->GetValueAt(index);
}

void VDFileIdPreferences::ToXml(DOM_Element& element) const
{
    DOM_Element child = element.GetOwnerDocument().CreateElement(VDUXmlHelper::VDToDOMString("Preferences"));
    for (int index = 0; index < pairs_->GetSize(); ++index)
        child.SetAttribute(VDUXmlHelper::VDToDOMString(pairs_->GetKeyAt(index)),
                           VDUXmlHelper::VDToDOMString(pairs_->GetValueAt(index)));
    element.AppendChild(child);
}

char VDFileIdPreferences::FromXml(DOM_Node& node)
{
    const DOM_Element element(node);
    if (element.IsNull())
        return 0;
    Clear();
    for (int index = 0; index < element.GetAttributeCount(); ++index) {
        const DOM_Node attribute = element.GetAttributeNode(index);
        SetString(VDUXmlHelper::DOMToVDString(attribute.GetNodeName()),
                  VDUXmlHelper::DOMToVDString(attribute.GetNodeValue()));
    }
    return 1;
}
