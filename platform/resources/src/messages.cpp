#include <qar/qardatainterfaces/messages.hpp>

extern "C" {
// The compiled texts/. genrb and pkgdata generate them, and this name.
extern const char zrqar_res_dat[];
}

namespace tavik_core {

BaseMsgID::~BaseMsgID() = default;

}  // namespace tavik_core

namespace qar::qardatainterfaces {
namespace {

const tavik_core::MessageBundle texts{"zrqar_res", zrqar_res_dat};

// Constructed when the library is loaded, so that naming an error allocates no memory.
const std::string file_open_failed = "QARDATAINTERFACES_FILE_OPEN_FAILED";
const std::string file_not_exist = "QARDATAINTERFACES_FILE_NOT_EXIST";
const std::string file_format_not_supported = "QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED";
const std::string transform_failed = "QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER";

}  // namespace

QARDATAINTERFACES_FILE_OPEN_FAILED::QARDATAINTERFACES_FILE_OPEN_FAILED(const std::string& path,
                                                                       const std::string& reason)
    : BaseMsgID(texts, file_open_failed, {path, reason}) {}

QARDATAINTERFACES_FILE_NOT_EXIST::QARDATAINTERFACES_FILE_NOT_EXIST(const std::string& path)
    : BaseMsgID(texts, file_not_exist, {path}) {}

QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED::QARDATAINTERFACES_FILE_FORMAT_NOT_SUPPORTED(const std::string& path)
    : BaseMsgID(texts, file_format_not_supported, {path}) {}

QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER::QARDATAINTERFACES_TRANFORM_FAILED_WITH_INVALID_CHARACTER()
    : BaseMsgID(texts, transform_failed, {}) {}

}  // namespace qar::qardatainterfaces
