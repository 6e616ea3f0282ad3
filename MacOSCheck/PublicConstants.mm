// Every constant of the declarations in SDK/ against its documented value, and the values that the
// core carries for the system against the system's own. scripts/macos-check compiles it.

#import <AppKit/AppKit.h>
#import <FinderSync/FinderSync.h>
#import <Foundation/Foundation.h>
#include <os/log.h>

#include <type_traits>

#include "Platform/FileManager.hpp"
#include "QuorvaFinderExtension/MenuRequest.hpp"

static_assert(std::is_same_v<NSUInteger, unsigned long>);
static_assert(std::is_same_v<NSInteger, long>);
static_assert(std::is_same_v<NSTimeInterval, double>);
static_assert(std::is_same_v<unichar, unsigned short>);
static_assert(std::is_same_v<std::underlying_type_t<FIMenuKind>, NSUInteger>);
static_assert(std::is_same_v<std::underlying_type_t<NSSearchPathDirectory>, NSUInteger>);
#if defined(__arm64__)
static_assert(std::is_same_v<BOOL, bool>);
#else
static_assert(std::is_same_v<BOOL, signed char>);
#endif

static_assert(NSNotFound == 0x7fff'ffff'ffff'ffff);
static_assert(NSOrderedAscending == -1 && NSOrderedSame == 0 && NSOrderedDescending == 1);

static_assert(NSASCIIStringEncoding == 1);
static_assert(NSUTF8StringEncoding == 4);
static_assert(NSISOLatin1StringEncoding == 5);
static_assert(NSUnicodeStringEncoding == 10);
static_assert(NSUTF16StringEncoding == 10);
static_assert(NSCaseInsensitiveSearch == 1 && NSLiteralSearch == 2 && NSBackwardsSearch == 4);
static_assert(NSAnchoredSearch == 8 && NSNumericSearch == 64);
static_assert(NSStringEncodingConversionAllowLossy == 1);
static_assert(NSStringEncodingConversionExternalRepresentation == 2);

static_assert(NSDataReadingMappedIfSafe == 1 && NSDataReadingUncached == 2);
static_assert(NSDataReadingMappedAlways == 8);
static_assert(NSDataWritingAtomic == 1 && NSDataWritingWithoutOverwriting == 2);

static_assert(NSApplicationDirectory == 1);
static_assert(NSDemoApplicationDirectory == 2);
static_assert(NSDeveloperApplicationDirectory == 3);
static_assert(NSAdminApplicationDirectory == 4);
static_assert(NSLibraryDirectory == 5);
static_assert(NSDeveloperDirectory == 6);
static_assert(NSUserDirectory == 7);
static_assert(NSDocumentationDirectory == 8);
static_assert(NSDocumentDirectory == 9);
static_assert(NSCoreServiceDirectory == 10);
static_assert(NSAutosavedInformationDirectory == 11);
static_assert(NSDesktopDirectory == 12);
static_assert(NSCachesDirectory == 13);
static_assert(NSApplicationSupportDirectory == 14);
static_assert(NSDownloadsDirectory == 15);
static_assert(NSInputMethodsDirectory == 16);
static_assert(NSMoviesDirectory == 17);
static_assert(NSMusicDirectory == 18);
static_assert(NSPicturesDirectory == 19);
static_assert(NSUserDomainMask == 1 && NSLocalDomainMask == 2);
static_assert(NSNetworkDomainMask == 4 && NSSystemDomainMask == 8 && NSAllDomainsMask == 0xffff);

static_assert(NSDirectoryEnumerationSkipsSubdirectoryDescendants == 1);
static_assert(NSDirectoryEnumerationSkipsPackageDescendants == 2);
static_assert(NSDirectoryEnumerationSkipsHiddenFiles == 4);

static_assert(NSPropertyListImmutable == 0 && NSPropertyListMutableContainers == 1);
static_assert(NSPropertyListMutableContainersAndLeaves == 2);
static_assert(NSPropertyListOpenStepFormat == 1);
static_assert(NSPropertyListXMLFormat_v1_0 == 100);
static_assert(NSPropertyListBinaryFormat_v1_0 == 200);

static_assert(NSJSONReadingMutableContainers == 1 && NSJSONReadingMutableLeaves == 2);
static_assert(NSJSONReadingFragmentsAllowed == 4);
static_assert(NSJSONWritingPrettyPrinted == 1 && NSJSONWritingSortedKeys == 2);
static_assert(NSJSONWritingFragmentsAllowed == 4 && NSJSONWritingWithoutEscapingSlashes == 8);

static_assert(NSNotificationSuspensionBehaviorDrop == 1);
static_assert(NSNotificationSuspensionBehaviorCoalesce == 2);
static_assert(NSNotificationSuspensionBehaviorHold == 3);
static_assert(NSNotificationSuspensionBehaviorDeliverImmediately == 4);
static_assert(NSDistributedNotificationDeliverImmediately == 1);
static_assert(NSDistributedNotificationPostToAllSessions == 2);

static_assert(NSControlStateValueMixed == -1);
static_assert(NSControlStateValueOff == 0 && NSControlStateValueOn == 1);

static_assert(FIMenuKindContextualMenuForItems == 0);
static_assert(FIMenuKindContextualMenuForContainer == 1);
static_assert(FIMenuKindContextualMenuForSidebar == 2);
static_assert(FIMenuKindToolbarItemMenu == 3);

static_assert(OS_LOG_TYPE_DEFAULT == 0 && OS_LOG_TYPE_INFO == 1 && OS_LOG_TYPE_DEBUG == 2);
static_assert(OS_LOG_TYPE_ERROR == 16 && OS_LOG_TYPE_FAULT == 17);

namespace {

template <typename System, typename Core>
constexpr bool sameValue(System system, Core core) {
    return static_cast<NSUInteger>(system) == static_cast<NSUInteger>(core);
}

}  // namespace

using quorva::MenuKind;
using quorva::platform::SearchPathDirectory;

static_assert(sameValue(NSDocumentDirectory, SearchPathDirectory::documents));
static_assert(sameValue(NSDesktopDirectory, SearchPathDirectory::desktop));
static_assert(sameValue(NSApplicationSupportDirectory, SearchPathDirectory::applicationSupport));
static_assert(sameValue(NSDownloadsDirectory, SearchPathDirectory::downloads));
static_assert(sameValue(NSMoviesDirectory, SearchPathDirectory::movies));
static_assert(sameValue(NSMusicDirectory, SearchPathDirectory::music));
static_assert(sameValue(NSPicturesDirectory, SearchPathDirectory::pictures));

static_assert(sameValue(FIMenuKindContextualMenuForItems, MenuKind::contextualMenuForItems));
static_assert(sameValue(FIMenuKindContextualMenuForContainer,
                        MenuKind::contextualMenuForContainer));
static_assert(sameValue(FIMenuKindContextualMenuForSidebar, MenuKind::contextualMenuForSidebar));
static_assert(sameValue(FIMenuKindToolbarItemMenu, MenuKind::toolbarItemMenu));
