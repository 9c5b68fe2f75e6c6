// Saved pages served by a web server that nobody here wrote.

#include "cli/ui/fetch_stage.h"
#include "demo_forum/web_server.h"

namespace {

std::string FindNginx() {
  for (const char* const path : {"/usr/sbin/nginx", "/usr/local/sbin/nginx", "/usr/bin/nginx"})
    if (std::filesystem::exists(path)) return path;
  return {};
}

/// nginx in a folder of its own; it listens when the constructor returns.
class Nginx {
 public:
  Nginx(const std::string& program, const TempFolder& folder) {
    constexpr int kAttempts = 5;  // another program may be quicker to take the port
    for (int attempt = 0; attempt < kAttempts; ++attempt)
      if (Starts(program, folder)) return;
    throw std::runtime_error("nginx does not start");
  }
  const std::string& address() const { return address_; }

 private:
  bool Starts(const std::string& program, const TempFolder& folder) {
    address_ = WebServer(0, {}, {}).Address();  // it was free a moment ago
    const std::string temporary = folder / "nginx";
    std::string config = Cat("daemon off;\nmaster_process off;\npid ", temporary,
                             "/pid;\nerror_log /dev/stdout notice;\nevents {}\nhttp {\naccess_log off;\n"
                             "default_type text/html;\ngzip on;\ngzip_min_length 1;\n");
    for (const char* kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
      config += Cat(kind, "_temp_path ", temporary, "/", kind, ";\n");
    config += Cat("server { listen ", address_, "; root ", folder / "www", "; }\n}\n");
    const std::string path = folder.Put("nginx/nginx.conf", config);
    program_.emplace(std::vector<std::string>{program, "-c", path, "-e", "/dev/stdout"});
    // It tells its way of waiting for events once its sockets are open.
    for (std::string line; !(line = program_->ReadLine()).empty();)
      if (line.find("event method") != std::string::npos) return true;
    return false;
  }

  std::string address_;
  std::optional<RunningProgram> program_;
};

TEST_F(FetchStage, AnyWebServerDoes) {
  const std::string program = FindNginx();
  if (program.empty()) GTEST_SKIP() << "nginx is not installed";
  DemoSite site(60, 0, clock_);
  const Nginx nginx(program, folder_);
  demo_folder::Make(files_, program_, nginx.address(), site, 20, clock_);
  const std::string base = demo_folder::BasePath(program_, "kdv");
  const std::string expected = BaseWithPages(site, base, "kdv");
  SavePages(site, "kdv", "www/kdv/messages");
  folder_.Put("www/kdv/data.txt", demo_pages::KdvLastNumber(site.Messages("kdv").Last()));
  const Outcome fetched = Kdvbase({"fetch", base});
  EXPECT_EQ(fetched.status, 0) << fetched.out;
  EXPECT_NE(fetched.out.find("Записано сообщений: 40,"), std::string::npos) << fetched.out;
  ExpectSame(base, expected);
}

}  // namespace
