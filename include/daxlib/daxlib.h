#pragma once

/// The whole exported interface of daxlib.

#include "daxlib/DaxApi.h"
#include "daxlib/DaxHandle.h"
#include "daxlib/DaxTypes.h"
#include "daxlib/FIA.h"
#include "daxlib/FID.h"
#include "daxlib/FINF.h"
#include "daxlib/FileFormatPlugin.h"
#include "daxlib/TSAcc.h"
#include "daxlib/TSAccGen.h"
#include "daxlib/TimeSeriesPlugin.h"
#include "daxlib/VDCanChanDefinition.h"
#include "daxlib/VDCanDefinition.h"
#include "daxlib/VDCanFrameDecoder.h"
#include "daxlib/VDCanFrameDefinition.h"
#include "daxlib/VDCanSignalBits.h"
#include "daxlib/VDChanSep.h"
#include "daxlib/VDFileIdPreferences.h"
#include "daxlib/VDGeneralFiles.h"
#include "daxlib/VDMetaDataConfiguration.h"
#include "daxlib/VDMetaDataReader.h"
#include "daxlib/VDProgressObject.h"
#include "daxlib/VDXmlMetaDataTranslator.h"
#include "daxlib/VFDax.h"
#include "daxlib/VFDaxMetaData.h"
#include "daxlib/VFDaxMetaDataExpression.h"
#include "daxlib/VMD.h"
#include "daxlib/Z4FF.h"

// Failures are recorded in the error system of `vdbase`, which every host reads.
#include "vdbase/VFError.h"
