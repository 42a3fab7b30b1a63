#include "platform/linux/CurlFailure.h"

namespace velmor {

std::string transportMessage(CURLcode failure) {
  switch (failure) {
  case CURLE_OPERATION_TIMEDOUT:
    return "The request timed out.";
  case CURLE_COULDNT_RESOLVE_HOST:
    return "The server could not be found.";
  case CURLE_COULDNT_RESOLVE_PROXY:
    return "The proxy server could not be found.";
  case CURLE_COULDNT_CONNECT:
    return "The server could not be reached.";
  case CURLE_PEER_FAILED_VERIFICATION:
  case CURLE_SSL_CACERT_BADFILE:
  case CURLE_SSL_ISSUER_ERROR:
  case CURLE_SSL_INVALIDCERTSTATUS:
    return "The server's certificate could not be verified.";
  case CURLE_SSL_CONNECT_ERROR:
  case CURLE_SSL_CIPHER:
    return "A secure connection to the server could not be made.";
  case CURLE_GOT_NOTHING:
  case CURLE_PARTIAL_FILE:
  case CURLE_RECV_ERROR:
  case CURLE_SEND_ERROR:
  case CURLE_HTTP2:
  case CURLE_HTTP2_STREAM:
    return "The network connection was lost.";
  case CURLE_UNSUPPORTED_PROTOCOL:
  case CURLE_WEIRD_SERVER_REPLY:
    return "The server's answer could not be understood.";
  default:
    return "The request could not be carried out.";
  }
}

} // namespace velmor
