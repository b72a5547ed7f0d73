#pragma once

/// The error codes that the library raises; their texts stand in the message catalogue. A value without a comment is
/// explained by its text.
namespace DaxError {

// Block 0: general
constexpr int OutOfMemory = -327681;
constexpr int InvalidHandle = -327682;
constexpr int SerialisedId = -327684;
constexpr int SerialisedVersion = -327685;
constexpr int EndOfFile = -327686;
constexpr int CreateObject = -327687;
constexpr int CleanUpObject = -327688;
constexpr int UnknownAccessFailure = -327690;
constexpr int NoChannelTitle = -327691;
constexpr int NoChannelUnits = -327695;
constexpr int NoMatchingColumn = -327692;
constexpr int ColumnTypeMismatch = -327693;
constexpr int InvalidColumnType = -327694;
constexpr int MetaDataItemMissing = -327696;
constexpr int MetaDataExpression = -327697;
constexpr int PluginDisabled = -327698;
constexpr int NoSetNames = -327699;
constexpr int UnmatchedSetNames = -327700;
constexpr int AdoptSet = -327701;
constexpr int MetaDataQuerySyntax = -327702;
constexpr int MetaDataQueryExpression = -327703;
constexpr int InvalidArguments = -327704;

// Block 1: histogram access
constexpr int HistInvalidFileId = -327794;
constexpr int FileIdNotSet = -327795;
constexpr int HistNotSupported = -327802;
constexpr int HistUnknownFailure = -327807;
constexpr int HistPluginFailure = -327808;
constexpr int HistEmptyChannelList = -327809;

// Block 3: time series access and channel lists
constexpr int EmptyChannelList = -327982;
constexpr int StatisticUndefined = -327987;
constexpr int InvalidPoint = -327989;
constexpr int CannotExtend = -327990;
constexpr int NotImplemented = -327992;
constexpr int NotOpen = -327993;
constexpr int NoChannelList = -327994;
constexpr int ChannelIndexRange = -327995;
constexpr int NotWritable = -327998;
constexpr int InvalidOpenMode = -328005;
constexpr int TooManyPoints = -328006;
constexpr int PastSequentialChunk = -328007;
constexpr int TsNotSupported = -328008;
constexpr int SetIdFirst = -328009;
constexpr int InvalidChannelNumber = -328010;
constexpr int InvalidSampleRate = -328011;
constexpr int HeaderValue = -328012;
constexpr int ClassNotRecognised = -328013;
constexpr int StatisticsFailure = -328015;
constexpr int AlreadyOpen = -328016;
constexpr int CreateMismatch = -328017;
constexpr int SetIdBeforeOpen = -328018;
constexpr int OperationAborted = -328019;
constexpr int TsPluginFailure = -328020;
constexpr int FullScaleUnknown = -328021;

// Block 9: file id object and file names
constexpr int InvalidNameForm = -328582;
constexpr int BlankFilename = -328583;
constexpr int InvalidOpSys = -328584;
constexpr int ChannelNotAvailable = -328587;
constexpr int OutputExtension = -328591;
constexpr int OutputSuffix = -328592;
constexpr int OutputFolder = -328593;
constexpr int OutputNameForm = -328594;
constexpr int IndexOutOfRange = -328595;
constexpr int OutputPrefix = -328596;
constexpr int FilenameNotSet = -328597;
constexpr int NoChannelsConfigured = -328598;
constexpr int TestFileSize = -328600;
constexpr int SetFileIdFirst = -328601;
constexpr int OutputName = -328602;
constexpr int DeleteTest = -328603;
constexpr int SeveralTestsMatch = -328604;
constexpr int NoTestMatches = -328605;
constexpr int InvalidNumChanDigits = -328607;
constexpr int InvalidDescriptorType = -328608;
constexpr int InvalidDataSource = -328610;
constexpr int NonDiskDelete = -328611;
constexpr int IdentByExtension = -328612;
constexpr int DecodeDescriptor = -328614;
constexpr int NotOneTest = -328615;
constexpr int DescriptorAccessType = -328616;
constexpr int XmlFormat = -328617;
constexpr int XmlVersionUnknown = -328618;

// Block 10: FileFormat plug-ins and file identification
constexpr int PluginList = -328681;
constexpr int PluginLibrary = -328682;
constexpr int PluginFunction = -328683;
constexpr int IdentOpen = -328684;
constexpr int IdentRead = -328685;
constexpr int IdentFilename = -328686;
constexpr int IdentBlank = -328687;
constexpr int NotRecognised = -328688;
constexpr int FormatPluginFailure = -328689;
constexpr int NoFilename = -328691;
constexpr int UnknownFileId = -328692;
constexpr int FormatDetails = -328693;
constexpr int NoDefaultExtension = -328695;
constexpr int NoNameForm = -328696;
constexpr int FormatPluginUnknown = -328697;
constexpr int NoFormatKeyword = -328698;
constexpr int InvalidKeyword = -328699;
constexpr int RecursiveIdent = -328700;
constexpr int FormatPluginNotLoaded = -328702;

// Block 11: directory lists
constexpr int CreateFileList = -328781;
constexpr int FileIdFilter = -328782;
constexpr int AccessTypeFilter = -328783;
constexpr int ScanAborted = -328784;
constexpr int AtFile = -328785;
constexpr int AtFileNames = -328786;

// Block 13: multi-column access
constexpr int NoDataSets = -328981;
constexpr int DataSetIndexRange = -328982;
constexpr int NoColumns = -328983;
constexpr int ColumnIndexRange = -328984;
constexpr int XyNotSupported = -328988;
constexpr int XyRead = -328989;
constexpr int VariantData = -328992;
constexpr int VariantBuffer = -328993;
constexpr int NoStatusWords = -328996;
constexpr int NotNumericColumn = -328997;
constexpr int NoEnumColumns = -329001;
constexpr int EnumOptions = -329002;

// Block 16: identification of storage files
constexpr int StorageType = -329281;
constexpr int NoTimeSeriesChannels = -329288;
constexpr int NoHistogramChannels = -329290;

// Block 21: metadata sidecars
constexpr int SidecarNotOpen = -329781;

// Block 22: storage files
constexpr int StorageFileId = -329881;
constexpr int StorageReadPastEnd = -329882;
constexpr int StorageHistSubType = -329884;
constexpr int StorageOpen = -329885;
constexpr int StorageChannelIndex = -329886;

// Block 38: metadata as XML
constexpr int XmlVersion = -331482;
constexpr int XmlSetName = -331483;
constexpr int XmlItemName = -331484;
constexpr int XmlItemValue = -331486;
constexpr int XmlNoNumber = -331487;
constexpr int XmlMapper = -331488;
constexpr int XmlNumber = -331489;
constexpr int XmlBoolean = -331490;
constexpr int XmlUnsChar = -331491;
constexpr int XmlUnsShort = -331492;
constexpr int XmlShort = -331493;
constexpr int XmlUnsLong = -331494;
constexpr int XmlLong = -331495;
constexpr int XmlUnsHuge = -331496;
constexpr int XmlHuge = -331497;
constexpr int XmlFloat = -331498;
constexpr int XmlDouble = -331499;
constexpr int XmlAttributeText = -331500;  ///< the text of the next code, with the attribute's name
constexpr int XmlAttribute = -331501;
constexpr int XmlType = -331502;
constexpr int XmlUnsupportedType = -331503;
constexpr int XmlWrite = -331504;
constexpr int XmlRead = -331505;
constexpr int XmlChannel = -331506;

// Block 39: complex frequency access
constexpr int NoSpectra = -331581;
constexpr int SpectrumRange = -331582;
constexpr int NoLines = -331583;
constexpr int LineRange = -331584;
constexpr int CfNotSupported = -331585;
constexpr int NoXTitle = -331586;
constexpr int NoXUnits = -331587;
constexpr int NoYTitle = -331588;
constexpr int NoYUnits = -331589;
constexpr int NoZTitle = -331590;
constexpr int NoZUnits = -331591;

// Block 50: access to Famos files
constexpr int FamosFileId = -332681;
constexpr int FamosReadPastEnd = -332682;
constexpr int FamosWrite = -332683;
constexpr int FamosNoStatus = -332684;
constexpr int FamosFileOpen = -332685;
constexpr int FamosFileClose = -332686;

// Block 51: Famos files
constexpr int FamosOpen = -332781;
constexpr int FamosInvalid = -332782;
constexpr int FamosRead = -332783;
constexpr int FamosIdKey = -332784;
constexpr int FamosStatusKey = -332785;
constexpr int FamosOriginKey = -332786;
constexpr int FamosGroupDefinitionKey = -332787;
constexpr int FamosTextDefinitionKey = -332788;
constexpr int FamosDataKey = -332789;
constexpr int FamosScalingKey = -332790;
constexpr int FamosTriggerTimeKey = -332791;
constexpr int FamosComponentKey = -332793;
constexpr int FamosPacketKey = -332794;
constexpr int FamosBufferKey = -332795;
constexpr int FamosRangeKey = -332796;
constexpr int FamosChannelKey = -332798;
constexpr int FamosSamplesKey = -332799;
constexpr int FamosNoDataField = -332801;
constexpr int FamosNoComponent = -332802;
constexpr int FamosNoPacket = -332803;
constexpr int FamosChannelRange = -332804;
constexpr int FamosShortFrame = -332806;

// Block 64: file id preferences
constexpr int PreferenceNotFound = -334081;

// Block 67: CAN databases and frames
constexpr int DbcNodeLine = -334381;
constexpr int DbcDuplicateFrameNames = -334382;
constexpr int DbcFrameLine = -334383;
constexpr int DbcFrameId = -334384;
constexpr int DbcFrameBytes = -334386;
constexpr int DbcSignalBeforeFrame = -334388;
constexpr int DbcSignalColon = -334389;
constexpr int DbcStartBit = -334391;
constexpr int DbcNumBits = -334392;
constexpr int DbcByteOrder = -334393;
constexpr int DbcFactor = -334394;
constexpr int DbcOffset = -334396;
constexpr int DbcMinimum = -334397;
constexpr int DbcMaximum = -334398;
constexpr int DbcIncompleteSignal = -334399;
constexpr int DbcErrorAtLine = -334400;
constexpr int DbcMultiplexId = -334401;
constexpr int DbcNoFrames = -334402;
constexpr int DbcReceiver = -334403;
constexpr int DbcMultiplexSwitches = -334404;
constexpr int FrameNotDefined = -334406;
constexpr int SignalTooLong = -334409;
constexpr int FrameIdLimit = -334410;
constexpr int FrameLength = -334413;

}  // namespace DaxError

/// Ids of the texts that are no errors.
namespace DaxText {

constexpr int None = 1001;
constexpr int All = 1002;
constexpr int Selected = 1003;
constexpr int FileStem = 1004;
constexpr int File = 1005;
constexpr int CalculatingStatistics = 1401;
constexpr int Filename = 1601;
constexpr int TestName = 1602;
constexpr int Extension = 1603;
constexpr int CalculatingLimits = 1702;
constexpr int UnexpectedError = 4304;
constexpr int AccessTypeUnknown = 9001;  ///< the name of access type n (1 to 7) is this id + n

}  // namespace DaxText
