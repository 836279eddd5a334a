#!/usr/bin/python3
"""Writes a tiny language model of random numbers for the real inference server: it answers at once, and nothing that it
says has to do with the question. usage: write-random-model.py FILE.gguf
"""
import random
import struct
import sys

WIDTH, INNER, LAYERS, HEADS, CONTEXT, ALIGNMENT = 64, 128, 2, 4, 1024, 32
UINT, FLOAT, STRING, ARRAY, INT = 4, 6, 8, 9, 5


def text(value):
    encoded = value.encode()
    return struct.pack("<Q", len(encoded)) + encoded


def field(key, kind, value):
    packed = {UINT: lambda v: struct.pack("<I", v), FLOAT: lambda v: struct.pack("<f", v),
              INT: lambda v: struct.pack("<i", v), STRING: text}
    if isinstance(value, list):
        return text(key) + struct.pack("<IIQ", ARRAY, kind, len(value)) + b"".join(map(packed[kind], value))
    return text(key) + struct.pack("<I", kind) + packed[kind](value)


def byte_tokens():
    visible = [*range(0x21, 0x7F), *range(0xA1, 0xAD), *range(0xAE, 0x100)]
    hidden = [byte for byte in range(256) if byte not in visible]
    return [chr(byte) if byte in visible else chr(0x100 + hidden.index(byte)) for byte in range(256)]


def main(path):
    words = [a + b for a in "abcdefgh" for b in "eiou"]
    tokens = byte_tokens() + words + ["<s>", "</s>"]
    normal, control = 1, 3
    fields = [
        field("general.architecture", STRING, "llama"), field("general.name", STRING, "random"),
        field("llama.context_length", UINT, CONTEXT), field("llama.embedding_length", UINT, WIDTH),
        field("llama.block_count", UINT, LAYERS), field("llama.feed_forward_length", UINT, INNER),
        field("llama.attention.head_count", UINT, HEADS), field("llama.attention.head_count_kv", UINT, HEADS),
        field("llama.attention.layer_norm_rms_epsilon", FLOAT, 1e-5), field("llama.vocab_size", UINT, len(tokens)),
        field("llama.rope.dimension_count", UINT, WIDTH // HEADS),
        field("tokenizer.ggml.model", STRING, "gpt2"), field("tokenizer.ggml.pre", STRING, "gpt-2"),
        field("tokenizer.ggml.tokens", STRING, tokens),
        field("tokenizer.ggml.token_type", INT, [normal] * (len(tokens) - 2) + [control] * 2),
        field("tokenizer.ggml.merges", STRING, [f"{word[0]} {word[1]}" for word in words]),
        field("tokenizer.ggml.bos_token_id", UINT, len(tokens) - 2),
        field("tokenizer.ggml.eos_token_id", UINT, len(tokens) - 1),
        field("tokenizer.chat_template", STRING, "{% for message in messages %}{{ message.content }}\n{% endfor %}"),
    ]
    shapes = {"token_embd": (WIDTH, len(tokens)), "output_norm": (WIDTH,), "output": (WIDTH, len(tokens))}
    for layer in range(LAYERS):
        for name, shape in {"attn_norm": (WIDTH,), "attn_q": (WIDTH, WIDTH), "attn_k": (WIDTH, WIDTH),
                            "attn_v": (WIDTH, WIDTH), "attn_output": (WIDTH, WIDTH), "ffn_norm": (WIDTH,),
                            "ffn_gate": (WIDTH, INNER), "ffn_up": (WIDTH, INNER), "ffn_down": (INNER, WIDTH)}.items():
            shapes[f"blk.{layer}.{name}"] = shape
    numbers = random.Random(1)
    head, data = b"", b""
    for name, shape in shapes.items():
        head += text(name + ".weight") + struct.pack("<I", len(shape)) + struct.pack(f"<{len(shape)}Q", *shape)
        head += struct.pack("<IQ", 0, len(data))
        count = shape[0] * (shape[1] if len(shape) > 1 else 1)
        values = [1.0] * count if "norm" in name else [numbers.gauss(0, 0.3) for _ in range(count)]
        data += struct.pack(f"<{count}f", *values)
        data += bytes(-len(data) % ALIGNMENT)
    start = struct.pack("<4sIQQ", b"GGUF", 3, len(shapes), len(fields)) + b"".join(fields) + head
    with open(path, "wb") as file:
        file.write(start + bytes(-len(start) % ALIGNMENT) + data)


main(sys.argv[1])
