// Numbers of run-time errors: those of Visual Basic and those of DAO. One line each says when the
// real one is raised; no other file spells such a number.
#pragma once

#include <cstdint>

namespace zimbrat::platform {

// Visual Basic.
inline constexpr std::int32_t kErrInvalidCall = 5;            // negative length, start below 1
inline constexpr std::int32_t kErrOverflow = 6;               // outside the range of a number type
inline constexpr std::int32_t kErrOutOfMemory = 7;
inline constexpr std::int32_t kErrSubscript = 9;              // array index outside its bounds
inline constexpr std::int32_t kErrDivisionByZero = 11;
inline constexpr std::int32_t kErrTypeMismatch = 13;          // text that is no number or Boolean
inline constexpr std::int32_t kErrUserInterrupt = 18;         // Ctrl+C, or the system's request to end
inline constexpr std::int32_t kErrBadFileName = 52;
inline constexpr std::int32_t kErrFileNotFound = 53;
inline constexpr std::int32_t kErrDeviceIo = 57;
inline constexpr std::int32_t kErrFileExists = 58;
inline constexpr std::int32_t kErrDiskFull = 61;
inline constexpr std::int32_t kErrPermissionDenied = 70;      // file in use elsewhere
inline constexpr std::int32_t kErrDiskNotReady = 71;
inline constexpr std::int32_t kErrPathAccess = 75;            // no right to the file or folder
inline constexpr std::int32_t kErrPathNotFound = 76;
inline constexpr std::int32_t kErrObjectNotSet = 91;          // an object used before it was set
inline constexpr std::int32_t kErrInvalidNull = 94;
inline constexpr std::int32_t kErrCannotCreateObject = 429;
inline constexpr std::int32_t kErrNoSuchMember = 438;         // a member asked for by a wrong name
inline constexpr std::int32_t kErrAutomation = 440;
inline constexpr std::int32_t kErrMapi = 32000;               // and the code of MAPI added
inline constexpr std::int32_t kErrNoMailSession = 32053;

// DAO: files, passwords, sharing.
inline constexpr std::int32_t kErrInvalidArgument = 3001;
inline constexpr std::int32_t kErrBadDatabaseName = 3005;
inline constexpr std::int32_t kErrTooManyTransactions = 3003; // nested deeper than five
inline constexpr std::int32_t kErrCouldNotFindFile = 3024;
inline constexpr std::int32_t kErrNoDiskSpace = 3026;
inline constexpr std::int32_t kErrReadOnly = 3027;
inline constexpr std::int32_t kErrInvalidAccount = 3029;      // user name or password of a workspace
inline constexpr std::int32_t kErrInvalidPassword = 3031;
inline constexpr std::int32_t kErrNoTransaction = 3034;
inline constexpr std::int32_t kErrDatabaseFull = 3036;        // 2 GB
inline constexpr std::int32_t kErrDiskIo = 3043;
inline constexpr std::int32_t kErrInvalidPath = 3044;         // the folder does not exist
inline constexpr std::int32_t kErrFileInUse = 3045;
inline constexpr std::int32_t kErrRecordTooLarge = 3047;
inline constexpr std::int32_t kErrCannotOpenDatabase = 3049;  // damaged catalogue or page
inline constexpr std::int32_t kErrCannotOpenFile = 3051;      // no right to the file
inline constexpr std::int32_t kErrInvalidFileName = 3055;
inline constexpr std::int32_t kErrCannotRepair = 3056;
inline constexpr std::int32_t kErrDatabaseExists = 3204;
inline constexpr std::int32_t kErrUnrecognizedFormat = 3343;
inline constexpr std::int32_t kErrInvalidLocale = 3424;
inline constexpr std::int32_t kErrNoCountryCode = 3449;
inline constexpr std::int32_t kErrNotExclusive = 3621;        // NewPassword on a shared database

// DAO: objects and collections.
inline constexpr std::int32_t kErrTableInUse = 3009;          // structure change with rows open
inline constexpr std::int32_t kErrTableExists = 3010;
inline constexpr std::int32_t kErrObjectNotFound = 3011;
inline constexpr std::int32_t kErrObjectExists = 3012;
inline constexpr std::int32_t kErrTwoCounters = 3090;
inline constexpr std::int32_t kErrInvalidName = 3125;
inline constexpr std::int32_t kErrTooManyFields = 3190;
inline constexpr std::int32_t kErrFieldDefinedTwice = 3191;
inline constexpr std::int32_t kErrFieldRelatedToItself = 3206;
inline constexpr std::int32_t kErrInvalidOperation = 3219;
inline constexpr std::int32_t kErrNotSupported = 3251;
inline constexpr std::int32_t kErrInvalidFieldType = 3259;
inline constexpr std::int32_t kErrTableLocked = 3261;
inline constexpr std::int32_t kErrNoFieldDefined = 3264;
inline constexpr std::int32_t kErrItemNotFound = 3265;
inline constexpr std::int32_t kErrFieldAppendedTwice = 3266;
inline constexpr std::int32_t kErrValueNeedsRecordset = 3267;
inline constexpr std::int32_t kErrPropertyFixed = 3268;       // put after the object was appended
inline constexpr std::int32_t kErrIndexAppendedTwice = 3269;
inline constexpr std::int32_t kErrInvalidPropertyValue = 3271;
inline constexpr std::int32_t kErrTooManyIndexFields = 3277;
inline constexpr std::int32_t kErrFieldInIndex = 3280;
inline constexpr std::int32_t kErrUsedInRelation = 3281;
inline constexpr std::int32_t kErrPrimaryKeyExists = 3283;
inline constexpr std::int32_t kErrIndexExists = 3284;
inline constexpr std::int32_t kErrInvalidIndexDefinition = 3285;
inline constexpr std::int32_t kErrCannotIndexField = 3287;
inline constexpr std::int32_t kErrFieldInRelation = 3303;
inline constexpr std::int32_t kErrPropertyTooLarge = 3309;
inline constexpr std::int32_t kErrExpressionNotAllowed = 3313; // default or rule on counter or OLE
inline constexpr std::int32_t kErrExpressionSyntax = 3320;
inline constexpr std::int32_t kErrUnknownNameInExpression = 3344;
inline constexpr std::int32_t kErrDefaultSyntax = 3355;
inline constexpr std::int32_t kErrRelationNoFields = 3366;
inline constexpr std::int32_t kErrDuplicateName = 3367;
inline constexpr std::int32_t kErrRelationFieldsDiffer = 3368;
inline constexpr std::int32_t kErrDesignReadOnly = 3370;
inline constexpr std::int32_t kErrRelationDataViolates = 3379;
inline constexpr std::int32_t kErrFieldTooLong = 3382;        // text above 255 characters
inline constexpr std::int32_t kErrUnknownFunctionInDefault = 3388;
inline constexpr std::int32_t kErrInvalidFieldName = 3409;    // in an index or relation
inline constexpr std::int32_t kErrObjectInvalid = 3420;       // closed or deleted
inline constexpr std::int32_t kErrDataConversion = 3421;
inline constexpr std::int32_t kErrNoUniqueIndex = 3609;
inline constexpr std::int32_t kErrTooManyIndexes = 3626;

// DAO: data.
inline constexpr std::int32_t kErrNoEdit = 3020;              // Update without AddNew or Edit
inline constexpr std::int32_t kErrNoCurrentRecord = 3021;
inline constexpr std::int32_t kErrDuplicateKey = 3022;
inline constexpr std::int32_t kErrNullInIndex = 3058;
inline constexpr std::int32_t kErrFieldTooSmall = 3163;
inline constexpr std::int32_t kErrFieldNotUpdatable = 3164;   // counter
inline constexpr std::int32_t kErrRelatedRecords = 3200;
inline constexpr std::int32_t kErrRelatedRecordRequired = 3201;
inline constexpr std::int32_t kErrRequired = 3314;
inline constexpr std::int32_t kErrZeroLength = 3315;
inline constexpr std::int32_t kErrTableRule = 3316;
inline constexpr std::int32_t kErrFieldRule = 3317;

// DAO: Jet SQL.
inline constexpr std::int32_t kErrTooFewParameters = 3061;    // an unknown name
inline constexpr std::int32_t kErrDuplicateDestination = 3063;
inline constexpr std::int32_t kErrExecuteSelect = 3065;
inline constexpr std::int32_t kErrNoInputTable = 3067;
inline constexpr std::int32_t kErrNotUpdatableQuery = 3073;   // totals or a subquery as a value of UPDATE
inline constexpr std::int32_t kErrRepeatedTableName = 3074;
inline constexpr std::int32_t kErrQueryExpression = 3075;
inline constexpr std::int32_t kErrTableNotFound = 3078;
inline constexpr std::int32_t kErrAmbiguousName = 3079;
inline constexpr std::int32_t kErrNotInJoin = 3082;           // ON names a table that is not joined
inline constexpr std::int32_t kErrUndefinedFunction = 3085;
inline constexpr std::int32_t kErrCannotDelete = 3086;        // DELETE over a join
inline constexpr std::int32_t kErrOrderConflictsDistinct = 3093;
inline constexpr std::int32_t kErrAggregateInGroupBy = 3095;
inline constexpr std::int32_t kErrAggregateInWhere = 3096;
inline constexpr std::int32_t kErrAggregateInJoin = 3097;
inline constexpr std::int32_t kErrAggregateInOrderBy = 3098;
inline constexpr std::int32_t kErrNestedAggregate = 3099;     // an aggregate of an aggregate
inline constexpr std::int32_t kErrDistinctOnLongValue = 3114; // OLE, as in the three below
inline constexpr std::int32_t kErrAggregateOfLongValue = 3115;
inline constexpr std::int32_t kErrSortOnLongValue = 3117;
inline constexpr std::int32_t kErrJoinOnLongValue = 3118;
inline constexpr std::int32_t kErrGroupOnLongValue = 3119;
inline constexpr std::int32_t kErrNotAggregated = 3122;
inline constexpr std::int32_t kErrBracketing = 3126;
inline constexpr std::int32_t kErrUnknownInsertField = 3127;
inline constexpr std::int32_t kErrNoDeleteTable = 3128;       // DELETE over several tables names none
inline constexpr std::int32_t kErrInvalidSql = 3129;
inline constexpr std::int32_t kErrDeleteSyntax = 3130;
inline constexpr std::int32_t kErrFromSyntax = 3131;
inline constexpr std::int32_t kErrGroupBySyntax = 3132;
inline constexpr std::int32_t kErrHavingSyntax = 3133;
inline constexpr std::int32_t kErrInsertSyntax = 3134;
inline constexpr std::int32_t kErrJoinSyntax = 3135;
inline constexpr std::int32_t kErrOrderBySyntax = 3138;
inline constexpr std::int32_t kErrSelectSyntax = 3141;
inline constexpr std::int32_t kErrAfterEndOfSql = 3142;
inline constexpr std::int32_t kErrUpdateSyntax = 3144;
inline constexpr std::int32_t kErrWhereSyntax = 3145;
inline constexpr std::int32_t kErrOutputTableNotFound = 3192;
inline constexpr std::int32_t kErrAmbiguousOuterJoin = 3258;
inline constexpr std::int32_t kErrConstraintSyntax = 3289;
inline constexpr std::int32_t kErrCreateTableSyntax = 3290;
inline constexpr std::int32_t kErrCreateIndexSyntax = 3291;
inline constexpr std::int32_t kErrFieldDefinitionSyntax = 3292;
inline constexpr std::int32_t kErrAlterTableSyntax = 3293;
inline constexpr std::int32_t kErrDropIndexSyntax = 3294;
inline constexpr std::int32_t kErrDropSyntax = 3295;
inline constexpr std::int32_t kErrJoinNotSupported = 3296;
inline constexpr std::int32_t kErrSubqueryColumns = 3306;
inline constexpr std::int32_t kErrUnionColumns = 3307;
inline constexpr std::int32_t kErrTopSyntax = 3308;
inline constexpr std::int32_t kErrUnionSyntax = 3319;
inline constexpr std::int32_t kErrValueCount = 3346;
inline constexpr std::int32_t kErrUnionOrder = 3351;          // ORDER BY of a union names no column
inline constexpr std::int32_t kErrSubqueryRows = 3354;
inline constexpr std::int32_t kErrQueryTooComplex = 3360;
inline constexpr std::int32_t kErrTableOrConstraintNotFound = 3371;// ALTER TABLE
inline constexpr std::int32_t kErrNoSuchIndex = 3372;
inline constexpr std::int32_t kErrNoPrimaryKey = 3373;        // REFERENCES without columns
inline constexpr std::int32_t kErrNotUniquelyIndexed = 3374;  // REFERENCES
inline constexpr std::int32_t kErrIndexExistsInTable = 3375;
inline constexpr std::int32_t kErrNoSuchTable = 3376;         // DROP TABLE, CREATE INDEX, REFERENCES
inline constexpr std::int32_t kErrRelationExists = 3378;
inline constexpr std::int32_t kErrFieldExistsInTable = 3380;
inline constexpr std::int32_t kErrNoSuchField = 3381;
inline constexpr std::int32_t kErrCriteriaMismatch = 3464;
inline constexpr std::int32_t kErrJoinTypeMismatch = 3615;

}  // namespace zimbrat::platform
