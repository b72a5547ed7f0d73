#include "ExtraMetaData.h"

#include "MetaDataMerge.h"

#include "daxlib/FID.h"
#include "daxlib/VDXmlMetaDataTranslator.h"
#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"
#include "vdstore/LQChannelMapper.h"
#include "vdxml/VDUXmlHelper.h"

namespace {

/// The site's file; one in the current folder stands in for it. Empty if there is none.
VDString DefinitionsFile()
{
    for (const VDString& folder : {VFTranslateName("home"), VDString()})
        if (VDString name = VFBuildFilename(folder, "_definitions", "xml"); VDFileSystem::FileExists(name))
            return name;
    return {};
}

bool MergeFile(const VDString& filename, LQChannelMapper& mapper, bool overwrite)
{
    const DOM_Document document = VDUXmlHelper::ParseXmlFromFile(filename);
    LQChannelMapper read(nullptr);
    char found = 0;
    return !document.IsNull() && VDXmlMetaDataTranslator().XmlToMetaData(document.GetDocumentElement(), &read, found) &&
           VFMergeMetaData(mapper, read, overwrite);
}

}  // namespace

bool VFAddExtraMetaData(VDFileId* id, bool skipDefinitions, LQChannelMapper& mapper)
{
    const VDString definitions = skipDefinitions ? VDString() : DefinitionsFile();
    if (!definitions.IsEmpty() && !MergeFile(definitions, mapper, false))
        return false;
    VDString own;
    return FIDGetExtraMetadataFilename(id, &own) != 0 && (own.IsEmpty() || MergeFile(own, mapper, true));
}
