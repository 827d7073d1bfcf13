#!/usr/bin/env python3
# A loopback stand-in for the Anthropic Messages API, for running the real Claude Code against
# Norva's hooks: each turn asks for the next Bash command of FAKE_COMMANDS ("||" between them),
# then it answers "Done.". Usage: claude_api_standin.py PORT
import json, os, sys
from http.server import BaseHTTPRequestHandler, HTTPServer

commands = [c for c in os.environ.get("FAKE_COMMANDS", "ls").split("||") if c]
log = open(os.environ.get("FAKE_LOG", os.devnull), "a")

def sse(events):
    out = b""
    for name, data in events:
        out += b"event: " + name.encode() + b"\ndata: " + json.dumps(data).encode() + b"\n\n"
    return out

class H(BaseHTTPRequestHandler):
    def log_message(self, *a): pass
    def do_GET(self):
        self.send_response(200); self.send_header("content-type", "application/json"); self.end_headers()
        self.wfile.write(b"{}")
    def do_POST(self):
        body = json.loads(self.rfile.read(int(self.headers.get("content-length", 0))) or b"{}")
        msgs = body.get("messages", [])
        tool_results = sum(1 for m in msgs if isinstance(m.get("content"), list)
                           for c in m["content"] if c.get("type") == "tool_result")
        has_tools = bool(body.get("tools"))
        log.write(f"{self.path} tools={has_tools} results={tool_results} stream={body.get('stream')}\n"); log.flush()
        if "count_tokens" in self.path:
            return self.reply({"input_tokens": 10})
        model = body.get("model", "claude")
        if has_tools and tool_results < len(commands):
            block = {"type": "tool_use", "id": f"toolu_fake{tool_results}", "name": "Bash", "input": {}}
            delta = {"type": "input_json_delta", "partial_json": json.dumps({"command": commands[tool_results], "description": "run it"})}
            stop = "tool_use"
        else:
            block = {"type": "text", "text": ""}
            delta = {"type": "text_delta", "text": "Done."}
            stop = "end_turn"
        msg = {"id": "msg_fake", "type": "message", "role": "assistant", "model": model, "content": [],
               "stop_reason": None, "stop_sequence": None, "usage": {"input_tokens": 10, "output_tokens": 1}}
        if not body.get("stream"):
            full = dict(block)
            if block["type"] == "text": full["text"] = "Done."
            else: full["input"] = json.loads(delta["partial_json"])
            msg.update(content=[full], stop_reason=stop)
            return self.reply(msg)
        data = sse([("message_start", {"type": "message_start", "message": msg}),
                    ("content_block_start", {"type": "content_block_start", "index": 0, "content_block": block}),
                    ("content_block_delta", {"type": "content_block_delta", "index": 0, "delta": delta}),
                    ("content_block_stop", {"type": "content_block_stop", "index": 0}),
                    ("message_delta", {"type": "message_delta", "delta": {"stop_reason": stop, "stop_sequence": None}, "usage": {"output_tokens": 5}}),
                    ("message_stop", {"type": "message_stop"})])
        self.send_response(200); self.send_header("content-type", "text/event-stream")
        self.send_header("content-length", str(len(data))); self.end_headers(); self.wfile.write(data)
    def reply(self, obj):
        data = json.dumps(obj).encode()
        self.send_response(200); self.send_header("content-type", "application/json")
        self.send_header("content-length", str(len(data))); self.end_headers(); self.wfile.write(data)

HTTPServer(("127.0.0.1", int(sys.argv[1])), H).serve_forever()
