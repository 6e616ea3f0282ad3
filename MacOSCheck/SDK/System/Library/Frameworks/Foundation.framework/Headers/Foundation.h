#pragma once

// Foundation as far as the extension uses it, written from the public documentation. See
// MacOSCheck/README.md.

#include <CoreFoundation/CoreFoundation.h>
#include <limits.h>
#import <objc/NSObject.h>
#import <objc/objc.h>
#include <stdint.h>

#define FOUNDATION_EXPORT CF_EXPORT
#define NS_ENUM(type, name) CF_ENUM(type, name)
#define NS_OPTIONS(type, name) CF_OPTIONS(type, name)
#define NS_FORMAT_FUNCTION(text, arguments) __attribute__((format(__NSString__, text, arguments)))
#define NS_REQUIRES_NIL_TERMINATION __attribute__((sentinel(0, 1)))
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))
#define NS_NOESCAPE __attribute__((noescape))
#define NS_REQUIRES_SUPER __attribute__((objc_requires_super))
// Main thread only.
#define NS_SWIFT_UI_ACTOR __attribute__((swift_attr("@UIActor")))

#pragma clang assume_nonnull begin

@class NSArray<ObjectType>;
@class NSCoder;
@class NSData;
@class NSDate;
@class NSDictionary<KeyType, ObjectType>;
@class NSError;
@class NSNotification;
@class NSNumber;
@class NSSet<ObjectType>;
@class NSString;
@class NSURL;

// Functions and basic types

typedef double NSTimeInterval;
typedef unsigned short unichar;

typedef struct _NSRange {
    NSUInteger location;
    NSUInteger length;
} NSRange;

static inline NSRange NSMakeRange(NSUInteger loc, NSUInteger len) {
    NSRange range = {loc, len};
    return range;
}

static const NSInteger NSNotFound = NSIntegerMax;

typedef NS_ENUM(NSInteger, NSComparisonResult) {
    NSOrderedAscending = -1L,
    NSOrderedSame,
    NSOrderedDescending,
};

FOUNDATION_EXPORT void NSLog(NSString* format, ...) NS_FORMAT_FUNCTION(1, 2);
FOUNDATION_EXPORT NSString* NSUserName(void);
FOUNDATION_EXPORT NSString* NSHomeDirectory(void);
FOUNDATION_EXPORT NSString* _Nullable NSHomeDirectoryForUser(NSString* _Nullable userName);
FOUNDATION_EXPORT NSString* NSTemporaryDirectory(void);
FOUNDATION_EXPORT NSString* NSStringFromClass(Class aClass);
FOUNDATION_EXPORT Class _Nullable NSClassFromString(NSString* aClassName);
FOUNDATION_EXPORT NSString* NSStringFromSelector(SEL aSelector);
FOUNDATION_EXPORT SEL NSSelectorFromString(NSString* aSelectorName);

// Protocols

@protocol NSCopying
- (id)copyWithZone:(nullable struct _NSZone*)zone;
@end

@protocol NSMutableCopying
- (id)mutableCopyWithZone:(nullable struct _NSZone*)zone;
@end

@protocol NSCoding
- (void)encodeWithCoder:(NSCoder*)coder;
- (nullable instancetype)initWithCoder:(NSCoder*)coder;
@end

@protocol NSSecureCoding <NSCoding>
@property (class, readonly) BOOL supportsSecureCoding;
@end

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end

@interface NSExtensionContext : NSObject
@end

@protocol NSExtensionRequestHandling <NSObject>
- (void)beginRequestWithExtensionContext:(NSExtensionContext*)context;
@end

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

// Strings and data

typedef NSUInteger NSStringEncoding;
enum {
    NSASCIIStringEncoding = 1,
    NSUTF8StringEncoding = 4,
    NSISOLatin1StringEncoding = 5,
    NSUnicodeStringEncoding = 10,
    NSUTF16StringEncoding = NSUnicodeStringEncoding,
};

typedef NS_OPTIONS(NSUInteger, NSStringCompareOptions) {
    NSCaseInsensitiveSearch = 1,
    NSLiteralSearch = 2,
    NSBackwardsSearch = 4,
    NSAnchoredSearch = 8,
    NSNumericSearch = 64,
};

typedef NS_OPTIONS(NSUInteger, NSStringEncodingConversionOptions) {
    NSStringEncodingConversionAllowLossy = 1,
    NSStringEncodingConversionExternalRepresentation = 2,
};

@interface NSString : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
@property (readonly) NSUInteger length;
- (unichar)characterAtIndex:(NSUInteger)index;
- (instancetype)init;
@end

@interface NSString (NSStringExtensionMethods)
@property (nullable, readonly) const char* UTF8String NS_RETURNS_INNER_POINTER;
@property (readonly, copy) NSString* description;
- (void)getCharacters:(unichar*)buffer range:(NSRange)range;
- (NSComparisonResult)compare:(NSString*)string;
- (NSComparisonResult)compare:(NSString*)string options:(NSStringCompareOptions)mask;
- (BOOL)isEqualToString:(NSString*)aString;
- (BOOL)hasPrefix:(NSString*)str;
- (BOOL)hasSuffix:(NSString*)str;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding;
- (BOOL)getBytes:(nullable void*)buffer
         maxLength:(NSUInteger)maxBufferCount
        usedLength:(nullable NSUInteger*)usedBufferCount
          encoding:(NSStringEncoding)encoding
           options:(NSStringEncodingConversionOptions)options
             range:(NSRange)range
    remainingRange:(nullable NSRange*)leftover;
- (NSUInteger)maximumLengthOfBytesUsingEncoding:(NSStringEncoding)enc;
- (NSUInteger)lengthOfBytesUsingEncoding:(NSStringEncoding)enc;
- (NSString*)stringByAppendingString:(NSString*)aString;
- (NSString*)stringByAppendingFormat:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
- (NSString*)substringFromIndex:(NSUInteger)from;
- (NSString*)substringToIndex:(NSUInteger)to;
- (instancetype)initWithCharacters:(const unichar*)characters length:(NSUInteger)length;
- (instancetype)initWithString:(NSString*)aString;
- (instancetype)initWithFormat:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
- (nullable instancetype)initWithData:(NSData*)data encoding:(NSStringEncoding)encoding;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)len
                              encoding:(NSStringEncoding)encoding;
- (nullable instancetype)initWithUTF8String:(const char*)nullTerminatedCString;
+ (instancetype)string;
+ (instancetype)stringWithCharacters:(const unichar*)characters length:(NSUInteger)length;
+ (instancetype)stringWithString:(NSString*)string;
+ (nullable instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
+ (instancetype)stringWithFormat:(NSString*)format, ... NS_FORMAT_FUNCTION(1, 2);
@end

@interface NSString (NSStringPathExtensions)
@property (readonly, copy) NSString* lastPathComponent;
@property (readonly, copy) NSString* stringByDeletingLastPathComponent;
@property (readonly, copy) NSString* stringByStandardizingPath;
@property (readonly, copy) NSString* stringByResolvingSymlinksInPath;
@property (readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
- (NSString*)stringByAppendingPathComponent:(NSString*)str;
@end

@interface NSMutableString : NSString
- (void)appendString:(NSString*)aString;
@end

@interface NSSimpleCString : NSString
@end

@interface NSConstantString : NSSimpleCString
@end

typedef NS_OPTIONS(NSUInteger, NSDataReadingOptions) {
    NSDataReadingMappedIfSafe = 1UL << 0,
    NSDataReadingUncached = 1UL << 1,
    NSDataReadingMappedAlways = 1UL << 3,
};

typedef NS_OPTIONS(NSUInteger, NSDataWritingOptions) {
    NSDataWritingAtomic = 1UL << 0,
    NSDataWritingWithoutOverwriting = 1UL << 1,
};

@interface NSData : NSObject <NSCopying, NSMutableCopying, NSSecureCoding>
@property (readonly) NSUInteger length;
@property (nullable, readonly) const void* bytes NS_RETURNS_INNER_POINTER;
@end

@interface NSData (NSExtendedData)
- (BOOL)isEqualToData:(NSData*)other;
- (void)getBytes:(void*)buffer length:(NSUInteger)length;
- (void)enumerateByteRangesUsingBlock:(void(NS_NOESCAPE ^)(const void* bytes, NSRange byteRange,
                                                           BOOL* stop))block;
- (BOOL)writeToFile:(NSString*)path
            options:(NSDataWritingOptions)writeOptionsMask
              error:(NSError**)errorPtr;
- (BOOL)writeToURL:(NSURL*)url
           options:(NSDataWritingOptions)writeOptionsMask
             error:(NSError**)errorPtr;
@end

@interface NSData (NSDataCreation)
+ (instancetype)data;
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
+ (instancetype)dataWithBytesNoCopy:(void*)bytes length:(NSUInteger)length freeWhenDone:(BOOL)b;
+ (nullable instancetype)dataWithContentsOfFile:(NSString*)path
                                        options:(NSDataReadingOptions)readOptionsMask
                                          error:(NSError**)errorPtr;
+ (nullable instancetype)dataWithContentsOfURL:(NSURL*)url
                                       options:(NSDataReadingOptions)readOptionsMask
                                         error:(NSError**)errorPtr;
- (instancetype)initWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
- (instancetype)initWithBytesNoCopy:(void*)bytes length:(NSUInteger)length freeWhenDone:(BOOL)b;
@end

@interface NSMutableData : NSData
@property (readonly) void* mutableBytes NS_RETURNS_INNER_POINTER;
@end

@interface NSMutableData (NSMutableDataCreation)
+ (nullable instancetype)dataWithLength:(NSUInteger)length;
@end

// Values

@interface NSValue : NSObject <NSCopying, NSSecureCoding>
@property (readonly) const char* objCType NS_RETURNS_INNER_POINTER;
- (void)getValue:(void*)value size:(NSUInteger)size;
@end

@interface NSNumber : NSValue
@property (readonly) char charValue;
@property (readonly) unsigned char unsignedCharValue;
@property (readonly) int intValue;
@property (readonly) unsigned int unsignedIntValue;
@property (readonly) long longValue;
@property (readonly) unsigned long unsignedLongValue;
@property (readonly) long long longLongValue;
@property (readonly) unsigned long long unsignedLongLongValue;
@property (readonly) float floatValue;
@property (readonly) double doubleValue;
@property (readonly) BOOL boolValue;
@property (readonly) NSInteger integerValue;
@property (readonly) NSUInteger unsignedIntegerValue;
@property (readonly, copy) NSString* stringValue;
- (NSComparisonResult)compare:(NSNumber*)otherNumber;
- (BOOL)isEqualToNumber:(NSNumber*)number;
+ (NSNumber*)numberWithChar:(char)value;
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
+ (NSNumber*)numberWithLong:(long)value;
+ (NSNumber*)numberWithUnsignedLong:(unsigned long)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithUnsignedLongLong:(unsigned long long)value;
+ (NSNumber*)numberWithFloat:(float)value;
+ (NSNumber*)numberWithDouble:(double)value;
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInteger:(NSInteger)value;
+ (NSNumber*)numberWithUnsignedInteger:(NSUInteger)value;
@end

@interface NSNull : NSObject <NSCopying, NSSecureCoding>
+ (NSNull*)null;
@end

@interface NSDate : NSObject <NSCopying, NSSecureCoding>
@property (readonly) NSTimeInterval timeIntervalSinceReferenceDate;
@end

@interface NSDate (NSExtendedDate)
@property (readonly) NSTimeInterval timeIntervalSinceNow;
@property (readonly) NSTimeInterval timeIntervalSince1970;
@property (readonly, copy) NSString* description;
@end

@interface NSDate (NSDateCreation)
+ (instancetype)date;
+ (instancetype)dateWithTimeIntervalSince1970:(NSTimeInterval)secs;
+ (instancetype)dateWithTimeIntervalSinceNow:(NSTimeInterval)secs;
@end

@interface NSUUID : NSObject <NSCopying, NSSecureCoding>
@property (readonly, copy) NSString* UUIDString;
+ (instancetype)UUID;
@end

// Collections

@interface NSEnumerator<ObjectType> : NSObject <NSFastEnumeration>
- (nullable ObjectType)nextObject;
@end

@interface NSArray<ObjectType>
    : NSObject <NSCopying, NSMutableCopying, NSSecureCoding, NSFastEnumeration>
@property (readonly) NSUInteger count;
- (ObjectType)objectAtIndex:(NSUInteger)index;
@end

@interface NSArray <ObjectType>(NSExtendedArray)
@property (nullable, readonly) ObjectType firstObject;
@property (nullable, readonly) ObjectType lastObject;
- (BOOL)containsObject:(ObjectType)anObject;
- (NSUInteger)indexOfObject:(ObjectType)anObject;
- (NSUInteger)indexOfObjectIdenticalTo:(ObjectType)anObject;
- (BOOL)isEqualToArray:(NSArray<ObjectType>*)otherArray;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)idx;
@end

@interface NSArray <ObjectType>(NSArrayCreation)
+ (instancetype)array;
+ (instancetype)arrayWithObject:(ObjectType)anObject;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nonnull])objects count:(NSUInteger)cnt;
+ (instancetype)arrayWithObjects:(ObjectType)firstObj, ... NS_REQUIRES_NIL_TERMINATION;
+ (instancetype)arrayWithArray:(NSArray<ObjectType>*)array;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
- (void)addObject:(ObjectType)anObject;
- (void)removeAllObjects;
- (void)removeLastObject;
- (instancetype)initWithCapacity:(NSUInteger)numItems;
+ (instancetype)arrayWithCapacity:(NSUInteger)numItems;
@end

@interface NSDictionary<KeyType, ObjectType>
    : NSObject <NSCopying, NSMutableCopying, NSSecureCoding, NSFastEnumeration>
@property (readonly) NSUInteger count;
- (nullable ObjectType)objectForKey:(KeyType)aKey;
- (NSEnumerator<KeyType>*)keyEnumerator;
@end

@interface NSDictionary <KeyType, ObjectType>(NSExtendedDictionary)
@property (readonly, copy) NSArray<KeyType>* allKeys;
@property (readonly, copy) NSArray<ObjectType>* allValues;
- (BOOL)isEqualToDictionary:(NSDictionary<KeyType, ObjectType>*)otherDictionary;
- (NSEnumerator<ObjectType>*)objectEnumerator;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
- (void)enumerateKeysAndObjectsUsingBlock:(void(NS_NOESCAPE ^)(KeyType key, ObjectType obj,
                                                               BOOL* stop))block;
@end

@interface NSDictionary <KeyType, ObjectType>(NSDictionaryCreation)
+ (instancetype)dictionary;
+ (instancetype)dictionaryWithObject:(ObjectType)object forKey:(KeyType<NSCopying>)key;
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)cnt;
+ (instancetype)dictionaryWithObjectsAndKeys:(id)firstObject, ... NS_REQUIRES_NIL_TERMINATION;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
- (void)removeObjectForKey:(KeyType)aKey;
- (void)setObject:(ObjectType)anObject forKey:(KeyType<NSCopying>)aKey;
- (instancetype)initWithCapacity:(NSUInteger)numItems;
+ (instancetype)dictionaryWithCapacity:(NSUInteger)numItems;
@end

@interface NSSet<ObjectType>
    : NSObject <NSCopying, NSMutableCopying, NSSecureCoding, NSFastEnumeration>
@property (readonly) NSUInteger count;
- (nullable ObjectType)member:(ObjectType)object;
- (NSEnumerator<ObjectType>*)objectEnumerator;
@end

@interface NSSet <ObjectType>(NSExtendedSet)
@property (readonly, copy) NSArray<ObjectType>* allObjects;
- (BOOL)containsObject:(ObjectType)anObject;
- (BOOL)isEqualToSet:(NSSet<ObjectType>*)otherSet;
@end

@interface NSSet <ObjectType>(NSSetCreation)
+ (instancetype)set;
+ (instancetype)setWithObject:(ObjectType)object;
+ (instancetype)setWithObjects:(ObjectType)firstObj, ... NS_REQUIRES_NIL_TERMINATION;
+ (instancetype)setWithArray:(NSArray<ObjectType>*)array;
@end

@interface NSMutableSet<ObjectType> : NSSet <ObjectType>
- (void)addObject:(ObjectType)object;
- (void)removeObject:(ObjectType)object;
- (instancetype)initWithCapacity:(NSUInteger)numItems;
+ (instancetype)setWithCapacity:(NSUInteger)numItems;
@end

// Errors and exceptions

typedef NSString* NSErrorDomain;
typedef NSString* NSErrorUserInfoKey;
typedef NSString* NSExceptionName;

FOUNDATION_EXPORT NSErrorDomain const NSCocoaErrorDomain;
FOUNDATION_EXPORT NSErrorDomain const NSPOSIXErrorDomain;
FOUNDATION_EXPORT NSErrorUserInfoKey const NSLocalizedDescriptionKey;
FOUNDATION_EXPORT NSExceptionName const NSGenericException;
FOUNDATION_EXPORT NSExceptionName const NSRangeException;
FOUNDATION_EXPORT NSExceptionName const NSInvalidArgumentException;
FOUNDATION_EXPORT NSExceptionName const NSInternalInconsistencyException;

@interface NSError : NSObject <NSCopying, NSSecureCoding>
@property (readonly, copy) NSErrorDomain domain;
@property (readonly) NSInteger code;
@property (readonly, copy) NSDictionary<NSErrorUserInfoKey, id>* userInfo;
@property (readonly, copy) NSString* localizedDescription;
+ (instancetype)errorWithDomain:(NSErrorDomain)domain
                           code:(NSInteger)code
                       userInfo:(nullable NSDictionary<NSErrorUserInfoKey, id>*)dict;
@end

@interface NSException : NSObject <NSCopying, NSSecureCoding>
@property (readonly, copy) NSExceptionName name;
@property (nullable, readonly, copy) NSString* reason;
@property (nullable, readonly, copy) NSDictionary* userInfo;
+ (NSException*)exceptionWithName:(NSExceptionName)name
                           reason:(nullable NSString*)reason
                         userInfo:(nullable NSDictionary*)userInfo;
- (void)raise;
@end

@interface NSException (NSExceptionRaisingConveniences)
+ (void)raise:(NSExceptionName)name format:(NSString*)format, ... NS_FORMAT_FUNCTION(2, 3);
@end

// URLs and files

typedef NSString* NSURLResourceKey;
FOUNDATION_EXPORT NSURLResourceKey const NSURLIsDirectoryKey;
FOUNDATION_EXPORT NSURLResourceKey const NSURLNameKey;

@interface NSURL : NSObject <NSSecureCoding, NSCopying>
@property (nullable, readonly, copy) NSString* absoluteString;
@property (nullable, readonly, copy) NSString* path;
@property (nullable, readonly, copy) NSString* lastPathComponent;
@property (readonly) BOOL hasDirectoryPath;
@property (readonly, getter=isFileURL) BOOL fileURL;
@property (readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
- (BOOL)getFileSystemRepresentation:(char*)buffer maxLength:(NSUInteger)maxBufferLength;
- (BOOL)getResourceValue:(out id _Nullable* _Nonnull)value
                  forKey:(NSURLResourceKey)key
                   error:(out NSError**)error;
+ (NSURL*)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDir;
+ (NSURL*)fileURLWithPath:(NSString*)path;
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDir
                                relativeToURL:(nullable NSURL*)baseURL;
- (instancetype)initFileURLWithPath:(NSString*)path isDirectory:(BOOL)isDir;
- (instancetype)initFileURLWithPath:(NSString*)path;
+ (nullable instancetype)URLWithString:(NSString*)URLString;
@end

@interface NSURL (NSURLPathUtilities)
@property (nullable, readonly, copy) NSURL* URLByDeletingLastPathComponent;
@property (nullable, readonly, copy) NSURL* URLByStandardizingPath;
@property (nullable, readonly, copy) NSURL* URLByResolvingSymlinksInPath;
- (nullable NSURL*)URLByAppendingPathComponent:(NSString*)pathComponent;
- (nullable NSURL*)URLByAppendingPathComponent:(NSString*)pathComponent
                                   isDirectory:(BOOL)isDirectory;
@end

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) {
    NSApplicationDirectory = 1,
    NSDemoApplicationDirectory,
    NSDeveloperApplicationDirectory,
    NSAdminApplicationDirectory,
    NSLibraryDirectory,
    NSDeveloperDirectory,
    NSUserDirectory,
    NSDocumentationDirectory,
    NSDocumentDirectory,
    NSCoreServiceDirectory,
    NSAutosavedInformationDirectory = 11,
    NSDesktopDirectory = 12,
    NSCachesDirectory = 13,
    NSApplicationSupportDirectory = 14,
    NSDownloadsDirectory = 15,
    NSInputMethodsDirectory = 16,
    NSMoviesDirectory = 17,
    NSMusicDirectory = 18,
    NSPicturesDirectory = 19,
};

typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) {
    NSUserDomainMask = 1,
    NSLocalDomainMask = 2,
    NSNetworkDomainMask = 4,
    NSSystemDomainMask = 8,
    NSAllDomainsMask = 0x0ffff,
};

typedef NS_OPTIONS(NSUInteger, NSDirectoryEnumerationOptions) {
    NSDirectoryEnumerationSkipsSubdirectoryDescendants = 1UL << 0,
    NSDirectoryEnumerationSkipsPackageDescendants = 1UL << 1,
    NSDirectoryEnumerationSkipsHiddenFiles = 1UL << 2,
};

typedef NSString* NSFileAttributeKey;
typedef NSString* NSFileAttributeType;

@interface NSFileManager : NSObject
@property (class, readonly, strong) NSFileManager* defaultManager;
@property (readonly, copy) NSURL* homeDirectoryForCurrentUser;
- (nullable NSURL*)homeDirectoryForUser:(NSString*)userName;
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domainMask;
- (nullable NSURL*)URLForDirectory:(NSSearchPathDirectory)directory
                          inDomain:(NSSearchPathDomainMask)domain
                 appropriateForURL:(nullable NSURL*)url
                            create:(BOOL)shouldCreate
                             error:(NSError**)error;
- (BOOL)createDirectoryAtURL:(NSURL*)url
    withIntermediateDirectories:(BOOL)createIntermediates
                     attributes:(nullable NSDictionary<NSFileAttributeKey, id>*)attributes
                          error:(NSError**)error;
- (BOOL)createDirectoryAtPath:(NSString*)path
    withIntermediateDirectories:(BOOL)createIntermediates
                     attributes:(nullable NSDictionary<NSFileAttributeKey, id>*)attributes
                          error:(NSError**)error;
- (nullable NSArray<NSURL*>*)contentsOfDirectoryAtURL:(NSURL*)url
                           includingPropertiesForKeys:(nullable NSArray<NSURLResourceKey>*)keys
                                              options:(NSDirectoryEnumerationOptions)mask
                                                error:(NSError**)error;
- (nullable NSArray<NSString*>*)contentsOfDirectoryAtPath:(NSString*)path error:(NSError**)error;
- (BOOL)fileExistsAtPath:(NSString*)path;
- (BOOL)fileExistsAtPath:(NSString*)path isDirectory:(nullable BOOL*)isDirectory;
- (BOOL)removeItemAtURL:(NSURL*)URL error:(NSError**)error;
- (const char*)fileSystemRepresentationWithPath:(NSString*)path NS_RETURNS_INNER_POINTER;
- (NSString*)stringWithFileSystemRepresentation:(const char*)str length:(NSUInteger)len;
@end

@interface NSFileHandle : NSObject <NSSecureCoding>
@property (readonly) int fileDescriptor;
+ (nullable instancetype)fileHandleForReadingFromURL:(NSURL*)url error:(NSError**)error;
+ (nullable instancetype)fileHandleForWritingToURL:(NSURL*)url error:(NSError**)error;
+ (nullable instancetype)fileHandleForUpdatingURL:(NSURL*)url error:(NSError**)error;
- (BOOL)writeData:(NSData*)data error:(out NSError**)error API_AVAILABLE(macos(10.15));
- (BOOL)seekToEndReturningOffset:(out unsigned long long* _Nullable)offsetInFile
                           error:(out NSError**)error API_AVAILABLE(macos(10.15));
- (BOOL)synchronizeAndReturnError:(out NSError**)error API_AVAILABLE(macos(10.15));
- (BOOL)closeAndReturnError:(out NSError**)error API_AVAILABLE(macos(10.15));
@end

typedef NS_OPTIONS(NSUInteger, NSPropertyListMutabilityOptions) {
    NSPropertyListImmutable = 0,
    NSPropertyListMutableContainers = 1 << 0,
    NSPropertyListMutableContainersAndLeaves = 1 << 1,
};

typedef NS_ENUM(NSUInteger, NSPropertyListFormat) {
    NSPropertyListOpenStepFormat = 1,
    NSPropertyListXMLFormat_v1_0 = 100,
    NSPropertyListBinaryFormat_v1_0 = 200,
};

typedef NSPropertyListMutabilityOptions NSPropertyListReadOptions;
typedef NSUInteger NSPropertyListWriteOptions;

@interface NSPropertyListSerialization : NSObject
+ (BOOL)propertyList:(id)plist isValidForFormat:(NSPropertyListFormat)format;
+ (nullable NSData*)dataWithPropertyList:(id)plist
                                  format:(NSPropertyListFormat)format
                                 options:(NSPropertyListWriteOptions)opt
                                   error:(out NSError**)error;
+ (nullable id)propertyListWithData:(NSData*)data
                            options:(NSPropertyListReadOptions)opt
                             format:(nullable NSPropertyListFormat*)format
                              error:(out NSError**)error;
@end

typedef NS_OPTIONS(NSUInteger, NSJSONReadingOptions) {
    NSJSONReadingMutableContainers = (1UL << 0),
    NSJSONReadingMutableLeaves = (1UL << 1),
    NSJSONReadingFragmentsAllowed = (1UL << 2),
};

typedef NS_OPTIONS(NSUInteger, NSJSONWritingOptions) {
    NSJSONWritingPrettyPrinted = (1UL << 0),
    NSJSONWritingSortedKeys = (1UL << 1),
    NSJSONWritingFragmentsAllowed = (1UL << 2),
    NSJSONWritingWithoutEscapingSlashes API_AVAILABLE(macos(10.15)) = (1UL << 3),
};

@interface NSJSONSerialization : NSObject
+ (BOOL)isValidJSONObject:(id)obj;
+ (nullable NSData*)dataWithJSONObject:(id)obj
                               options:(NSJSONWritingOptions)opt
                                 error:(NSError**)error;
+ (nullable id)JSONObjectWithData:(NSData*)data
                          options:(NSJSONReadingOptions)opt
                            error:(NSError**)error;
@end

// Bundles, processes, notifications

@interface NSBundle : NSObject
@property (class, readonly, strong) NSBundle* mainBundle;
@property (readonly, copy) NSURL* bundleURL;
@property (readonly, copy) NSString* bundlePath;
@property (nullable, readonly, copy) NSString* bundleIdentifier;
@property (nullable, readonly, copy) NSDictionary<NSString*, id>* infoDictionary;
- (NSString*)localizedStringForKey:(NSString*)key
                             value:(nullable NSString*)value
                             table:(nullable NSString*)tableName __attribute__((format_arg(1)));
@end

@interface NSThread : NSObject
@property (class, readonly) BOOL isMainThread;
@end

typedef NSString* NSRunLoopMode;
FOUNDATION_EXPORT NSRunLoopMode const NSDefaultRunLoopMode;

@interface NSRunLoop : NSObject
@property (class, readonly, strong) NSRunLoop* currentRunLoop;
@end

@interface NSRunLoop (NSRunLoopConveniences)
- (BOOL)runMode:(NSRunLoopMode)mode beforeDate:(NSDate*)limitDate;
@end

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject <NSCopying, NSCoding>
@property (readonly, copy) NSNotificationName name;
@property (nullable, readonly, retain) id object;
@property (nullable, readonly, copy) NSDictionary* userInfo;
@end

@interface NSNotification (NSNotificationCreation)
+ (instancetype)notificationWithName:(NSNotificationName)aName
                              object:(nullable id)anObject
                            userInfo:(nullable NSDictionary*)aUserInfo;
@end

@interface NSNotificationCenter : NSObject
@property (class, readonly, strong) NSNotificationCenter* defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)aSelector
               name:(nullable NSNotificationName)aName
             object:(nullable id)anObject;
- (void)postNotificationName:(NSNotificationName)aName
                      object:(nullable id)anObject
                    userInfo:(nullable NSDictionary*)aUserInfo;
- (void)removeObserver:(id)observer;
- (void)removeObserver:(id)observer
                  name:(nullable NSNotificationName)aName
                object:(nullable id)anObject;
@end

typedef NS_ENUM(NSUInteger, NSNotificationSuspensionBehavior) {
    NSNotificationSuspensionBehaviorDrop = 1,
    NSNotificationSuspensionBehaviorCoalesce = 2,
    NSNotificationSuspensionBehaviorHold = 3,
    NSNotificationSuspensionBehaviorDeliverImmediately = 4,
};

typedef NS_OPTIONS(NSUInteger, NSDistributedNotificationOptions) {
    NSDistributedNotificationDeliverImmediately = (1UL << 0),
    NSDistributedNotificationPostToAllSessions = (1UL << 1),
};

@interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter;
@property BOOL suspended;
- (void)addObserver:(id)observer
              selector:(SEL)selector
                  name:(nullable NSNotificationName)name
                object:(nullable NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)suspensionBehavior;
- (void)postNotificationName:(NSNotificationName)name
                      object:(nullable NSString*)object
                    userInfo:(nullable NSDictionary*)userInfo
          deliverImmediately:(BOOL)deliverImmediately;
- (void)postNotificationName:(NSNotificationName)name
                      object:(nullable NSString*)object
                    userInfo:(nullable NSDictionary*)userInfo
                     options:(NSDistributedNotificationOptions)options;
- (void)addObserver:(id)observer
           selector:(SEL)aSelector
               name:(nullable NSNotificationName)aName
             object:(nullable NSString*)anObject;
- (void)removeObserver:(id)observer
                  name:(nullable NSNotificationName)aName
                object:(nullable NSString*)anObject;
@end

#pragma clang assume_nonnull end
