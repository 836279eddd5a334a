#!/usr/bin/env python3
"""usage: write-model.py FILE CHAIN
Writes a language model in GGUF that knows bytes only, and after each byte always the same one: its layers add nothing,
every token is a direction of its own, and the output matrix turns it into that of its follower. The prompt ends with
">". A chain that ends with its beginning never ends."""
import struct, sys

file, chain = sys.argv[1], ">" + sys.argv[2]
tokens = ["<unk>", "<s>", "</s>"] + [f"<0x{byte:02X}>" for byte in range(256)]
end, first, width, heads = 2, 3, 288, 9
template = "{% for message in messages %}{{ message['content'] }}{% endfor %}>"

def text(value):
    return struct.pack("<Q", len(value.encode())) + value.encode()

def entry(key, value):
    if isinstance(value, str): return text(key) + struct.pack("<I", 8) + text(value)
    if isinstance(value, bool): return text(key) + struct.pack("<I?", 7, value)
    if isinstance(value, int): return text(key) + struct.pack("<II", 4, value)
    if isinstance(value, float): return text(key) + struct.pack("<If", 6, value)
    kind, pack = {str: (8, text), float: (6, lambda x: struct.pack("<f", x)), int: (5, lambda x: struct.pack("<i", x))}[type(value[0])]
    return text(key) + struct.pack("<IIQ", 9, kind, len(value)) + b"".join(map(pack, value))

def matrix(rows, columns, ones=()):
    cells = bytearray(4 * rows * columns)
    for row, column in ones:
        struct.pack_into("<f", cells, 4 * (row * columns + column), 1.0)
    return (rows, columns), bytes(cells)

entries = {
    "general.architecture": "llama", "llama.context_length": 2048, "llama.embedding_length": width, "llama.block_count": 1,
    "llama.feed_forward_length": width, "llama.attention.head_count": heads, "llama.attention.layer_norm_rms_epsilon": 1e-5,
    "tokenizer.ggml.model": "llama", "tokenizer.ggml.tokens": tokens, "tokenizer.ggml.scores": [0.0] * len(tokens),
    "tokenizer.ggml.token_type": [2, 3, 3] + [6] * 256, "tokenizer.ggml.bos_token_id": 1, "tokenizer.ggml.eos_token_id": end,
    "tokenizer.ggml.add_space_prefix": False, "tokenizer.chat_template": template,
}
follower = {byte + first: after + first for byte, after in zip(chain.encode(), chain.encode()[1:])}
norm = (width,), struct.pack("<f", 1.0) * width
square = matrix(width, width)
tensors = {
    "token_embd.weight": matrix(len(tokens), width, [(token, token) for token in range(len(tokens))]),
    "output.weight": matrix(len(tokens), width, [(follower.get(token, end), token) for token in range(len(tokens))]),
    "output_norm.weight": norm, "blk.0.attn_norm.weight": norm, "blk.0.ffn_norm.weight": norm,
    **{f"blk.0.{name}.weight": square for name in
       ("attn_q", "attn_k", "attn_v", "attn_output", "ffn_gate", "ffn_up", "ffn_down")},
}
head = b"GGUF" + struct.pack("<IQQ", 3, len(tensors), len(entries)) + b"".join(entry(*pair) for pair in entries.items())
place = 0
for name, (shape, cells) in tensors.items():
    head += text(name) + struct.pack(f"<I{len(shape)}QIQ", len(shape), *reversed(shape), 0, place)
    place += len(cells)
with open(file, "wb") as out:
    out.write(head + b"\0" * (-len(head) % 32))
    for _, cells in tensors.values(): out.write(cells)
