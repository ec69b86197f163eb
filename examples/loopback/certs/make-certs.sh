#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
# Makes the loopback certificate authority and the service host's certificate that the
# loopback HTTPS services of the tests and the demo present. Run it again only to replace
# them; the outputs are committed.
#   bash examples/loopback/certs/make-certs.sh [service host]
set -euo pipefail
cd "$(dirname "$0")"
host=${1:-api.tovra.io}
days=36500   # about a hundred years: the tests must not start failing on a date

openssl ecparam -name prime256v1 -genkey -noout -out test-ca.key
openssl req -x509 -new -key test-ca.key -sha256 -days "$days" \
    -subj "/O=Tovra tests/CN=Tovra Test CA" \
    -addext "basicConstraints=critical,CA:TRUE" \
    -addext "keyUsage=critical,keyCertSign,cRLSign" \
    -out test-ca.pem

openssl ecparam -name prime256v1 -genkey -noout -out service.key
openssl req -new -key service.key -subj "/O=Tovra tests/CN=$host" -out service.csr
openssl x509 -req -in service.csr -CA test-ca.pem -CAkey test-ca.key -CAcreateserial \
    -sha256 -days "$days" -out service.pem -extfile <(printf '%s\n' \
        "basicConstraints=critical,CA:FALSE" \
        "keyUsage=critical,digitalSignature" \
        "extendedKeyUsage=serverAuth" \
        "subjectAltName=DNS:$host")
# The CA key is not kept: nothing but this script ever signs with it.
rm -f service.csr test-ca.srl test-ca.key
