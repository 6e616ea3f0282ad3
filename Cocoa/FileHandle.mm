#include "Platform/FileHandle.hpp"

#import <Foundation/Foundation.h>

#import "Cocoa/ErrorConversion.h"
#import "Cocoa/ObjectHolder.h"
#import "Cocoa/URLConversion.h"

class quorva::FileHandle::Implementation {
   public:
    explicit Implementation(NSFileHandle* handle) : handle_(handle) {}
    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;
    ~Implementation() { (void)close(); }

    Result<void> seekToEnd() {
        return perform([&](NSError** error) {
            return [handle_.get() seekToEndReturningOffset:nullptr error:error];
        });
    }

    Result<void> write(std::string_view bytes) {
        return perform([&](NSError** error) {
            return [handle_.get() writeData:[NSData dataWithBytes:bytes.data() length:bytes.size()]
                                      error:error];
        });
    }

    Result<void> close() {
        const auto result = perform([&](NSError** error) {
            return handle_.get() == nil || [handle_.get() closeAndReturnError:error];
        });
        handle_ = {};
        return result;
    }

   private:
    template <typename Operation>
    static Result<void> perform(Operation operation) {
        @try {
            NSError* error = nil;
            if (!operation(&error)) {
                return std::unexpected(platformError(error));
            }
            return {};
        } @catch (NSException* exception) {
            return std::unexpected(platformError(exception));
        }
    }

    ObjectHolder<NSFileHandle> handle_;
};

quorva::FileHandle::FileHandle(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
quorva::FileHandle::FileHandle(FileHandle&&) noexcept = default;
quorva::FileHandle& quorva::FileHandle::operator=(FileHandle&&) noexcept = default;
quorva::FileHandle::~FileHandle() = default;

quorva::Result<quorva::FileHandle> quorva::FileHandle::forWritingToURL(const FileURL& url) {
    @try {
        NSError* error = nil;
        NSFileHandle* handle = [NSFileHandle fileHandleForWritingToURL:foundationURL(url)
                                                                 error:&error];
        if (handle == nil) {
            return std::unexpected(platformError(error));
        }
        return FileHandle(std::make_unique<Implementation>(handle));
    } @catch (NSException* exception) {
        return std::unexpected(platformError(exception));
    }
}

quorva::Result<void> quorva::FileHandle::seekToEnd() {
    return implementation_->seekToEnd();
}

quorva::Result<void> quorva::FileHandle::write(std::string_view bytes) {
    return implementation_->write(bytes);
}

quorva::Result<void> quorva::FileHandle::close() {
    return implementation_->close();
}
