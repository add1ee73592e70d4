#include "platform/macos/shell/NativeWorkspace.hpp"

#import <AppKit/AppKit.h>
#import <UniformTypeIdentifiers/UniformTypeIdentifiers.h>
#include <libproc.h>

#include "platform/macos/shell/FoundationValues.hpp"

// A program without an application object has no pool of its own that is emptied in each turn of its loop, so
// each function here brings one.
namespace quillo {
namespace {

ActivationPolicy policyOf(NSRunningApplication* application) {
    switch (application.activationPolicy) {
        case NSApplicationActivationPolicyRegular:
            return ActivationPolicy::regular;
        case NSApplicationActivationPolicyAccessory:
            return ActivationPolicy::accessory;
        case NSApplicationActivationPolicyProhibited:
            return ActivationPolicy::prohibited;
    }
    return ActivationPolicy::prohibited;
}

WorkspaceProcess described(NSRunningApplication* application) {
    return {.pid = application.processIdentifier,
            .identifier = foundation::text(application.bundleIdentifier),
            .name = foundation::text(application.localizedName),
            .policy = policyOf(application),
            .location = foundation::url(application.bundleURL),
            .launchDate = foundation::date(application.launchDate),
            .terminated = application.terminated == YES,
            .hidden = application.hidden == YES};
}

WorkspaceError described(NSError* error) {
    WorkspaceError result;
    for (id cause = error; [cause isKindOfClass:NSError.class];) {
        NSError* const one = cause;
        result.causes.push_back({foundation::text(one.domain).value_or(""), one.code});
        cause = one.userInfo[NSUnderlyingErrorKey];
    }
    return result;
}

NSRunningApplication* runningApplication(ProcessID pid) {
    return [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
}

std::vector<Url> urls(NSArray<NSURL*>* places) {
    std::vector<Url> all;
    for (NSURL* place in places) {
        if (auto url = foundation::url(place)) all.push_back(std::move(*url));
    }
    return all;
}

bool isTrue(id value) {
    return [value isKindOfClass:NSNumber.class] && ((NSNumber*)value).boolValue;
}

std::vector<std::string> typesOf(id value) {
    std::vector<std::string> types;
    if (![value isKindOfClass:UTType.class]) return types;
    UTType* const type = value;
    const auto add = [&](UTType* one) {
        if (auto identifier = foundation::text(one.identifier)) types.push_back(std::move(*identifier));
    };
    add(type);
    for (UTType* super in type.supertypes) add(super);
    return types;
}

}  // namespace

std::vector<WorkspaceProcess> NativeWorkspace::processes() {
    @autoreleasepool {
        std::vector<WorkspaceProcess> all;
        for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
            all.push_back(described(application));
        }
        return all;
    }
}

std::optional<ProcessID> NativeWorkspace::parent(ProcessID pid) {
    proc_bsdshortinfo
        info{};  // the short form is told of others' processes too: a terminal's login is root's
    const int size = proc_pidinfo(pid, PROC_PIDT_SHORTBSDINFO, 0, &info, sizeof info);
    return size == sizeof info ? std::optional(static_cast<ProcessID>(info.pbsi_ppid)) : std::nullopt;
}

std::optional<std::string> NativeWorkspace::ownIdentifier() {
    @autoreleasepool {
        return foundation::text(NSBundle.mainBundle.bundleIdentifier);
    }
}

std::vector<Url> NativeWorkspace::locations(std::string_view identifier) {
    @autoreleasepool {
        NSString* const wanted = foundation::string(identifier);
        return urls([NSWorkspace.sharedWorkspace URLsForApplicationsWithBundleIdentifier:wanted]);
    }
}

std::optional<std::string> NativeWorkspace::identifierAt(const Url& location) {
    @autoreleasepool {
        NSURL* const place = foundation::address(location);
        NSBundle* const bundle = place ? [NSBundle bundleWithURL:place] : nil;
        return foundation::text(bundle.bundleIdentifier);
    }
}

std::optional<std::string> NativeWorkspace::name(const Url& location) {
    @autoreleasepool {
        NSURL* const place = foundation::address(location);
        NSBundle* const bundle = place ? [NSBundle bundleWithURL:place] : nil;
        for (NSString* key in @[ @"CFBundleDisplayName", @"CFBundleName" ]) {
            const id value = [bundle objectForInfoDictionaryKey:key];
            if ([value isKindOfClass:NSString.class]) return foundation::text(value);
        }
        return std::nullopt;
    }
}

std::vector<Url> NativeWorkspace::openers(const Url& document) {
    @autoreleasepool {
        NSURL* const place = foundation::address(document);
        return place ? urls([NSWorkspace.sharedWorkspace URLsForApplicationsToOpenURL:place])
                     : std::vector<Url>();
    }
}

std::optional<DocumentFacts> NativeWorkspace::facts(const Url& document) {
    @autoreleasepool {
        NSURL* const place = foundation::address(document);  // a new one: it keeps what it was once told
        NSArray* const keys = @[ NSURLContentTypeKey, NSURLIsAliasFileKey, NSURLIsApplicationKey ];
        NSDictionary* const values = [place resourceValuesForKeys:keys error:nil];
        if (!values || !values[NSURLContentTypeKey]) return std::nullopt;
        return DocumentFacts{.isApplication = isTrue(values[NSURLIsApplicationKey]),
                             .isAlias = isTrue(values[NSURLIsAliasFileKey]),
                             .types = typesOf(values[NSURLContentTypeKey])};
    }
}

void NativeWorkspace::open(const Url& location, const std::vector<Url>& documents, Answered answered) {
    @autoreleasepool {
        NSURL* const application = foundation::address(location);
        NSMutableArray<NSURL*>* const addresses = [NSMutableArray array];
        for (const Url& document : documents) {
            if (NSURL* const one = foundation::address(document)) [addresses addObject:one];
        }
        if (!application || addresses.count != documents.size())
            return answered(WorkspaceError{{{"NSCocoaErrorDomain", 262}}});  // an address of no kind it knows
        NSWorkspaceOpenConfiguration* const configuration = [NSWorkspaceOpenConfiguration configuration];
        configuration.addsToRecentItems = NO;  // the person did not choose them again
        const auto handler = ^(NSRunningApplication*, NSError* error) {
          answered(error ? std::optional(described(error)) : std::nullopt);
        };
        if (documents.empty()) {
            [NSWorkspace.sharedWorkspace openApplicationAtURL:application
                                                configuration:configuration
                                            completionHandler:handler];
        } else {
            [NSWorkspace.sharedWorkspace openURLs:addresses
                             withApplicationAtURL:application
                                    configuration:configuration
                                completionHandler:handler];
        }
    }
}

bool NativeWorkspace::activate(ProcessID pid) {
    @autoreleasepool {
        return [runningApplication(pid) activateWithOptions:NSApplicationActivateAllWindows];
    }
}

bool NativeWorkspace::hide(ProcessID pid) {
    @autoreleasepool {
        return [runningApplication(pid) hide];
    }
}

bool NativeWorkspace::show(ProcessID pid) {
    @autoreleasepool {
        NSRunningApplication* application = runningApplication(pid);
        return application && (!application.hidden || [application unhide]);
    }
}

bool NativeWorkspace::terminate(ProcessID pid) {
    @autoreleasepool {
        return [runningApplication(pid) terminate];
    }
}

}  // namespace quillo
